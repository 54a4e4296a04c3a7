#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "device/TarveloDevice.h"
#include "device/widgets/TarveloStatusBar.h"
#include "foundation/widgets/NScrollViewer.h"
#include "foundation/widgets/NStackPanel.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"
#include "ui/AppStyle.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

namespace {
constexpr int WinMs = 8000;

QStringList statusCommands(const FakeBox &box)
{
    return box.commands().filter(QRegularExpression(QStringLiteral("^status(On|Off)$")));
}
} // namespace

Q_DECLARE_METATYPE(MainWindow::StatusClick)

class WidgetsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void stackPanelPacksItsItemsAtTheStart_data();
    void stackPanelPacksItsItemsAtTheStart();
    void removedWidgetLeavesThePanel();
    void placeholderShowsExactlyWhileEmpty();
    void windowOwnsTheModelAndShowsItsLook();
    void everyTabTakesAClickAtTheSmallestSize();
    void windowFollowsTheLink();
    void statusClickAction_data();
    void statusClickAction();

private:
    TestDataFolder m_data;
};

void WidgetsTest::initTestCase()
{
    QVERIFY(m_data.isValid());
    // The program's own look, since sizes and places depend on it.
    AppStyle::apply(*qApp);
    QVERIFY(QFontDatabase().families().contains(QStringLiteral("Roboto Condensed")));
}

void WidgetsTest::stackPanelPacksItsItemsAtTheStart_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("items");
    QTest::newRow("one, vertical") << int(Qt::Vertical) << 1;
    QTest::newRow("two, vertical") << int(Qt::Vertical) << 2;
    QTest::newRow("three, horizontal") << int(Qt::Horizontal) << 3;
}

// Items in a big panel don't share it out: they stand one behind the other at the start, and
// the slack stays behind the last.
void WidgetsTest::stackPanelPacksItsItemsAtTheStart()
{
    QFETCH(int, orientation);
    QFETCH(int, items);
    const bool vertical = orientation == Qt::Vertical;
    NStackPanel panel {Qt::Orientation(orientation)};
    panel.setSpacing(3);
    panel << nullptr; // ignored
    QList<QLabel *> labels;
    for (int i = 0; i < items; ++i) {
        labels << new QLabel(QStringLiteral("label %1").arg(i));
        panel << labels.last();
    }
    QCOMPARE(panel.count(), items);
    QCOMPARE(panel.at(items - 1), labels.last());
    panel.resize(600, 600);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    int expected = 0;
    for (QLabel *label : labels) {
        const QRect box = label->geometry();
        QCOMPARE(vertical ? box.y() : box.x(), expected);
        const QSize hint = label->sizeHint();
        QCOMPARE(vertical ? box.height() : box.width(), vertical ? hint.height() : hint.width());
        expected += (vertical ? hint.height() : hint.width()) + 3;
    }
}

void WidgetsTest::removedWidgetLeavesThePanel()
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
    panel.add(removed);
    QCOMPARE(removed->parentWidget(), &panel);
    QTRY_VERIFY(removed->isVisible());
    panel.remove(new QLabel(&panel)); // not an item: nothing happens
    QCOMPARE(panel.count(), 2);
}

void WidgetsTest::placeholderShowsExactlyWhileEmpty()
{
    NScrollViewer viewer(Qt::Vertical);
    viewer.setPlaceholderText(QStringLiteral("Пусто"));
    QPointer<QLabel> first = new QLabel(QStringLiteral("first"));
    viewer.add(first);
    viewer.resize(300, 300);
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    auto *placeholder = viewer.findChild<QLabel *>();
    QVERIFY(placeholder && placeholder != first);
    QVERIFY(!placeholder->isVisible());
    // The transparent viewer draws no frame around its items.
    QCOMPARE(viewer.scrollArea()->frameWidth(), 0);

    viewer.clear();
    QCOMPARE(viewer.count(), 0);
    QVERIFY(placeholder->isVisible());
    QVERIFY(!first || !first->isVisible());
    QTRY_VERIFY(!first);

    QPointer<QLabel> old = placeholder;
    auto *replacement = new QLabel(QStringLiteral("new"));
    viewer.setPlaceholderWidget(replacement);
    QTRY_VERIFY(!old);
    QVERIFY(replacement->isVisible());
    viewer.add(new QLabel(QStringLiteral("second")));
    QVERIFY(!replacement->isVisible());
}

void WidgetsTest::windowOwnsTheModelAndShowsItsLook()
{
    MainWindow window;
    QCOMPARE(window.model()->parent(), &window);
    QCOMPARE(TarveloModel::instance(), window.model());
    QVERIFY(window.windowTitle().startsWith(QStringLiteral("Тарвело ")));
    QCOMPARE(window.tabs()->count(), 5);
    // The setting's default.
    QVERIFY(window.windowState() & Qt::WindowMaximized);

    // The connection status stands under the pages, across the whole width.
    window.setWindowState(Qt::WindowNoState);
    window.resize(900, 700);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QRect tabs(window.tabs()->mapTo(&window, QPoint()), window.tabs()->size());
    const QRect status(window.tarveloStatusBar()->mapTo(&window, QPoint()),
                       window.tarveloStatusBar()->size());
    QVERIFY(tabs.bottom() < status.top());
    QCOMPARE(status.bottom(), window.rect().bottom());
    QCOMPARE(status.width(), window.width());

    // A plain click on the status bar shows the device page.
    window.tabs()->setCurrentIndex(MainWindow::SettingsPage);
    QTest::mouseClick(window.tarveloStatusBar()->findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(window.tabs()->currentIndex(), int(MainWindow::DevicePage));
}

void WidgetsTest::everyTabTakesAClickAtTheSmallestSize()
{
    MainWindow window;
    window.setWindowState(Qt::WindowNoState);
    window.resize(800, 600);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTabBar *bar = window.tabs()->tabBar();
    // Both ends of every tab, the right end of the last one lying under the version overlay.
    for (int i = bar->count() - 1; i >= 0; --i) {
        const QRect tab = bar->tabRect(i);
        for (const QPoint &point : {QPoint(tab.left() + 3, tab.center().y()),
                                    QPoint(tab.right() - 3, tab.center().y())}) {
            window.tabs()->setCurrentIndex(i == 0 ? 1 : 0);
            const QPoint inWindow = bar->mapTo(&window, point);
            QWidget *target = window.childAt(inWindow);
            QVERIFY(target);
            QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier,
                              target->mapFrom(&window, inWindow));
            QVERIFY2(window.tabs()->currentIndex() == i,
                     qPrintable(QStringLiteral("tab %1 at x %2 under %3")
                                    .arg(i)
                                    .arg(inWindow.x())
                                    .arg(target->metaObject()->className())));
        }
    }
}

// The status bar tells of the link, the progress bar shows during an upload, the box streams
// its state only while the device page shows, and a session's start brings its page forward.
void WidgetsTest::windowFollowsTheLink()
{
    FakeBox box; // answers the greeting only: serial number and version wait for the test
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    MainWindow window;
    TarveloDevice *device = window.model()->device();
    auto *button = window.tarveloStatusBar()->findChild<QPushButton *>();
    auto *progress = window.tarveloStatusBar()->findChild<QProgressBar *>();
    QCOMPARE(button->text(), QStringLiteral("Тарвело не найден"));
    const qint64 disconnectedIcon = button->icon().cacheKey();
    QStringList texts;
    const auto record = [&] {
        texts << button->text();
    };
    connect(device, &TarveloDevice::connectedChanged, this, record);
    connect(device, &TarveloDevice::gotPortName, this, record);
    connect(device, &TarveloDevice::gotSerialNumber, this, record);
    connect(device, &TarveloDevice::gotVersion, this, record);
    // Without a link the switch of the stream has nowhere to go.
    window.tabs()->setCurrentIndex(MainWindow::DevicePage);
    window.tabs()->setCurrentIndex(MainWindow::ScriptPage);

    QTRY_COMPARE_WITH_TIMEOUT(texts.size(), 2, WinMs);
    const QString port = device->portName();
    box.send(QStringLiteral("sn=250101"));
    box.send(QStringLiteral("version=3.1"));
    QTRY_COMPARE(texts.size(), 4);
    QCOMPARE(texts,
             (QStringList {"Тарвело подключен", "Тарвело подключен (" + port + ")",
                           "Тарвело подключен (SN:250101, " + port + ")",
                           "Тарвело подключен (SN:250101, v3.1, " + port + ")"}));
    QVERIFY(button->icon().cacheKey() != disconnectedIcon);

    QList<QPair<int, bool>> ticks;
    connect(device, &TarveloDevice::loadProgress, this, [&](int value) {
        ticks.append({value, !progress->isHidden() && progress->value() == value});
    });
    TarveloScript script;
    script.addStage(
        ScriptStage::fromText(QStringLiteral("rpt=0;[s=1,t=100,d=100][s=2,t=100,d=100]")));
    device->uploadScript(&script, -1, false);
    QCOMPARE(ticks.first(), qMakePair(40, true));
    QCOMPARE(ticks.last(), qMakePair(-1, false));

    for (int page : {3, 2, 3, 4, 0, 3, 1})
        window.tabs()->setCurrentIndex(page);
    QTRY_COMPARE(statusCommands(box),
                 (QStringList {"statusOn", "statusOff", "statusOn", "statusOff", "statusOff",
                               "statusOn", "statusOff"}));
    window.tabs()->setCurrentIndex(MainWindow::DevicePage);
    QTRY_COMPARE(statusCommands(box).size(), 8);
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_COMPARE(window.tabs()->currentIndex(), int(MainWindow::SessionPage));
    QTRY_COMPARE(statusCommands(box).size(), 9);
    QCOMPARE(statusCommands(box).last(), QStringLiteral("statusOff"));

    box.close();
    QTRY_VERIFY(!device->isConnected());
    QCOMPARE(button->text(), QStringLiteral("Тарвело не найден"));
    QCOMPARE(button->icon().cacheKey(), disconnectedIcon);
}

void WidgetsTest::statusClickAction_data()
{
    using Action = MainWindow::StatusClick;
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<Action>("action");
    QTest::newRow("none") << int(Qt::NoModifier) << Action::ShowDevicePage;
    QTest::newRow("shift+alt, no control")
        << int(Qt::ShiftModifier | Qt::AltModifier) << Action::ShowDevicePage;
    QTest::newRow("control+shift")
        << int(Qt::ControlModifier | Qt::ShiftModifier) << Action::DeviceSettings;
    QTest::newRow("control+shift+alt+meta")
        << int(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier)
        << Action::DeviceSettingsWithSerial;
}

void WidgetsTest::statusClickAction()
{
    QFETCH(int, modifiers);
    QFETCH(MainWindow::StatusClick, action);
    QCOMPARE(MainWindow::statusClickAction(Qt::KeyboardModifiers(modifiers)), action);
}

QTEST_MAIN(WidgetsTest)
#include "tst_widgets.moc"
