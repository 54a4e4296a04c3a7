#include "foundation/widgets/NScrollViewer.h"
#include "foundation/widgets/NStackPanel.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QScrollArea>
#include <QtTest>

class LayoutWidgetsTest : public QObject
{
    Q_OBJECT
private slots:
    void singleItemGetsTheWholeStretch();
    void lastItemTakesTheSlackAfterEveryChange_data();
    void lastItemTakesTheSlackAfterEveryChange();
    void itemsPackAtTheStart_data();
    void itemsPackAtTheStart();
    void nullWidgetIsIgnored();
    void removedWidgetLeavesThePanel();
    void placeholderShowsExactlyWhileEmpty();
    void clearedItemsAreGoneAndThePlaceholderShows();
    void newPlaceholderReplacesTheOld();
    void backgroundSheetNamesColourAndBorder();
};

namespace {
QList<int> stretches(NStackPanel &panel)
{
    auto *layout = qobject_cast<QBoxLayout *>(panel.layout());
    QList<int> values;
    for (int i = 0; i < layout->count(); ++i)
        values << layout->stretch(i);
    return values;
}
} // namespace

void LayoutWidgetsTest::singleItemGetsTheWholeStretch()
{
    NStackPanel panel(Qt::Vertical);
    auto *only = new QLabel(QStringLiteral("one"));
    panel.add(only);
    QCOMPARE(panel.count(), 1);
    QCOMPARE(panel.at(0), only);
    QCOMPARE(stretches(panel), (QList<int> {100}));
    QCOMPARE(panel.layout()->itemAt(0)->alignment(), Qt::AlignTop);
}

void LayoutWidgetsTest::lastItemTakesTheSlackAfterEveryChange_data()
{
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("removedAt"); // -1: nothing removed
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("three added") << 3 << -1 << QList<int> {0, 0, 100};
    QTest::newRow("last removed") << 3 << 2 << QList<int> {0, 100};
    QTest::newRow("first removed") << 3 << 0 << QList<int> {0, 100};
    QTest::newRow("all but one removed") << 2 << 1 << QList<int> {100};
}

void LayoutWidgetsTest::lastItemTakesTheSlackAfterEveryChange()
{
    QFETCH(int, added);
    QFETCH(int, removedAt);
    QFETCH(QList<int>, expected);
    NStackPanel panel(Qt::Horizontal);
    QList<QWidget *> widgets;
    for (int i = 0; i < added; ++i) {
        widgets << new QLabel(QString::number(i));
        panel << widgets.last();
    }
    if (removedAt >= 0) {
        panel.remove(widgets.at(removedAt));
        delete widgets.takeAt(removedAt);
    }
    QCOMPARE(stretches(panel), expected);
    for (int i = 0; i < panel.layout()->count(); ++i)
        QCOMPARE(panel.layout()->itemAt(i)->alignment(), Qt::AlignLeft);
}

void LayoutWidgetsTest::itemsPackAtTheStart_data()
{
    QTest::addColumn<int>("orientation");
    QTest::newRow("vertical") << int(Qt::Vertical);
    QTest::newRow("horizontal") << int(Qt::Horizontal);
}

void LayoutWidgetsTest::itemsPackAtTheStart()
{
    QFETCH(int, orientation);
    const bool vertical = orientation == Qt::Vertical;
    NStackPanel panel {Qt::Orientation(orientation)};
    panel.setSpacing(3);
    auto *first = new QLabel(QStringLiteral("first"));
    auto *second = new QLabel(QStringLiteral("second"));
    panel << first << second;
    panel.resize(600, 600);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));

    // Two labels in a big panel don't share it out: they stand one behind the other at the
    // start, and the slack stays behind the last.
    const auto start = [vertical](QWidget *w) {
        return vertical ? w->y() : w->x();
    };
    const auto length = [vertical](QWidget *w) {
        return vertical ? w->height() : w->width();
    };
    QCOMPARE(start(first), 0);
    QCOMPARE(length(first), vertical ? first->sizeHint().height() : first->sizeHint().width());
    QCOMPARE(start(second), length(first) + 3);
}

void LayoutWidgetsTest::nullWidgetIsIgnored()
{
    NStackPanel panel;
    panel.add(nullptr);
    panel << nullptr;
    QCOMPARE(panel.count(), 0);
    QCOMPARE(panel.layout()->count(), 0);
    QCOMPARE(panel.at(0), nullptr);
}

void LayoutWidgetsTest::removedWidgetLeavesThePanel()
{
    NStackPanel panel;
    auto *kept = new QLabel(QStringLiteral("kept"));
    auto *removed = new QLabel(QStringLiteral("removed"));
    panel << kept << removed;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    panel.remove(removed);
    // The caller has it back: no longer drawn over the panel, and free to be added again.
    QVERIFY(!removed->isVisible());
    QCOMPARE(removed->parent(), nullptr);
    QCOMPARE(panel.count(), 1);
    panel.add(removed);
    QCOMPARE(panel.count(), 2);
    QCOMPARE(removed->parentWidget(), &panel);
    QTRY_VERIFY(removed->isVisible());

    panel.remove(new QLabel(&panel)); // not an item: nothing happens
    QCOMPARE(panel.count(), 2);
}

void LayoutWidgetsTest::placeholderShowsExactlyWhileEmpty()
{
    NScrollViewer viewer(Qt::Vertical);
    viewer.setPlaceholderText(QStringLiteral("Пусто"), Qt::AlignCenter,
                              QStringLiteral("placeholder"), 4);
    auto *placeholder = viewer.findChild<QLabel *>(QStringLiteral("placeholder"));
    QVERIFY(placeholder);
    QCOMPARE(placeholder->text(), QStringLiteral("Пусто"));
    QVERIFY(placeholder->wordWrap());
    QVERIFY(!placeholder->isHidden());

    auto *item = new QLabel(QStringLiteral("item"));
    viewer.add(item);
    QVERIFY(placeholder->isHidden());
    QCOMPARE(viewer.count(), 1);
    QCOMPARE(viewer.itemAt(0), item);
    viewer.remove(item);
    delete item;
    QVERIFY(!placeholder->isHidden());
}

void LayoutWidgetsTest::clearedItemsAreGoneAndThePlaceholderShows()
{
    NScrollViewer viewer(Qt::Vertical);
    viewer.setPlaceholderText(QStringLiteral("Нет данных"));
    QPointer<QLabel> first = new QLabel(QStringLiteral("first"));
    QPointer<QLabel> second = new QLabel(QStringLiteral("second"));
    viewer.add(first);
    viewer.add(second);
    viewer.resize(300, 300);
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    auto *placeholder = viewer.findChild<QLabel *>();
    QVERIFY(placeholder && placeholder != first && placeholder != second);
    QVERIFY(!placeholder->isVisible());

    viewer.clear();
    QCOMPARE(viewer.count(), 0);
    QVERIFY(placeholder->isVisible());
    // The old items don't linger on the panel under the placeholder.
    QVERIFY(!first || !first->isVisible());
    QVERIFY(!second || !second->isVisible());
    QTRY_VERIFY(!first && !second);
}

void LayoutWidgetsTest::newPlaceholderReplacesTheOld()
{
    NScrollViewer viewer;
    viewer.setPlaceholderText(QStringLiteral("old"));
    QPointer<QLabel> old = viewer.findChild<QLabel *>();
    QVERIFY(old);
    auto *replacement = new QLabel(QStringLiteral("new"));
    viewer.setPlaceholderWidget(replacement);
    QTRY_VERIFY(!old);
    QCOMPARE(replacement->parentWidget(), &viewer);
    QVERIFY(!replacement->isHidden());
    viewer.setPlaceholderWidget(nullptr);
    viewer.clear(); // no placeholder left to show: nothing to do, no crash
}

void LayoutWidgetsTest::backgroundSheetNamesColourAndBorder()
{
    NScrollViewer viewer;
    QCOMPARE(viewer.scrollArea()->styleSheet(),
             QStringLiteral("QScrollArea { background: transparent; border: 0; } "
                            "QScrollArea > QWidget > QWidget { background: transparent; } "));
    viewer.setBackgroundAndBorder(Qt::white, 1, QColor(0xCCCCCC), true);
    QCOMPARE(viewer.scrollArea()->styleSheet(),
             QStringLiteral("QScrollArea { background: #ffffff; border: 1px solid #cccccc; } "
                            "QScrollArea > QWidget > QWidget { background: #ffffff; } "
                            "QScrollArea > QWidget > QWidget { background: #000}"));
    QCOMPARE(viewer.scrollArea()->palette().color(QPalette::Window), QColor(Qt::white));
    QVERIFY(viewer.scrollArea()->autoFillBackground());
    QVERIFY(viewer.scrollArea()->widgetResizable());
    QCOMPARE(viewer.scrollArea()->widget(), viewer.panel());
}

QTEST_MAIN(LayoutWidgetsTest)
#include "tst_layoutwidgets.moc"
