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

#include <QFontDatabase>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTabBar>
#include <QtTest>

namespace {
QStringList statusCommands(const FakeBox &box)
{
    return box.commands().filter(QRegularExpression(QStringLiteral("^status(On|Off)$")));
}
} // namespace

class WidgetsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void stackPanelPacksItsItemsAtTheStart();
    void placeholderShowsExactlyWhileEmpty();
    void windowOwnsTheModelAndEveryTabTakesAClick();
    void windowFollowsTheLink();

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

// Items in a big panel don't share it out: they stand one behind the other at the start, the
// slack behind the last; a removed item is the caller's again.
void WidgetsTest::stackPanelPacksItsItemsAtTheStart()
{
    NStackPanel panel(Qt::Vertical);
    panel.setSpacing(3);
    auto *first = new QLabel(QStringLiteral("first"));
    auto *second = new QLabel(QStringLiteral("second"));
    panel << nullptr << first;
    panel.resize(600, 600);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(first->y(), 0);
    QCOMPARE(first->height(), first->sizeHint().height());
    panel << second;
    QTRY_COMPARE(second->y(), first->height() + 3);
    QCOMPARE(second->height(), second->sizeHint().height());
    panel.remove(first);
    QVERIFY(!first->isVisible() && !first->parent());
    QTRY_COMPARE(second->y(), 0);
    panel.remove(first); // no item any more: nothing happens
    QCOMPARE(panel.count(), 1);
    delete first;
}

void WidgetsTest::placeholderShowsExactlyWhileEmpty()
{
    NScrollViewer viewer(Qt::Vertical);
    viewer.setPlaceholderText(QStringLiteral("Пусто"));
    QPointer<QLabel> item = new QLabel(QStringLiteral("item"));
    viewer.add(item);
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    auto *placeholder = viewer.findChild<QLabel *>();
    QVERIFY(placeholder != item && !placeholder->isVisible());
    // The transparent viewer draws no frame around its items.
    QCOMPARE(viewer.scrollArea()->frameWidth(), 0);
    viewer.clear();
    QVERIFY(placeholder->isVisible() && !item->isVisible());
    QTRY_VERIFY(!item);
}

void WidgetsTest::windowOwnsTheModelAndEveryTabTakesAClick()
{
    MainWindow window;
    QCOMPARE(window.model()->parent(), &window);
    QCOMPARE(TarveloModel::instance(), window.model());
    QVERIFY(window.windowTitle().startsWith(QStringLiteral("Тарвело ")));
    QVERIFY(window.windowState() & Qt::WindowMaximized); // the setting's default
    window.setWindowState(Qt::WindowNoState);
    window.resize(800, 600);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // The connection status stands under the pages, across the whole width.
    const QWidget *status = window.tarveloStatusBar();
    QVERIFY(window.tabs()->mapTo(&window, QPoint(0, window.tabs()->height())).y() <= status->y());
    QCOMPARE(status->geometry().bottom(), window.centralWidget()->height() - 1);
    QCOMPARE(status->width(), window.width());
    // Both ends of every tab, the right end of the last one lying under the version overlay.
    QTabBar *bar = window.tabs()->tabBar();
    for (int i = bar->count() - 1; i >= 0; --i) {
        const QRect tab = bar->tabRect(i);
        for (const QPoint &point : {QPoint(tab.left() + 3, tab.center().y()),
                                    QPoint(tab.right() - 3, tab.center().y())}) {
            window.tabs()->setCurrentIndex(i == 0 ? 1 : 0);
            const QPoint inWindow = bar->mapTo(&window, point);
            QWidget *target = window.childAt(inWindow);
            QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier,
                              target->mapFrom(&window, inWindow));
            QVERIFY2(window.tabs()->currentIndex() == i, target->metaObject()->className());
        }
    }
    // A plain click on the status bar shows the device page.
    QTest::mouseClick(status->findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(window.tabs()->currentIndex(), int(MainWindow::DevicePage));
}

// The status bar tells of the link, the progress bar shows during an upload, and the box streams
// its state only while the device page shows.
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

    window.tabs()->setCurrentIndex(MainWindow::DevicePage);
    window.tabs()->setCurrentIndex(MainWindow::SettingsPage);
    window.tabs()->setCurrentIndex(MainWindow::DatabasePage);
    QTRY_COMPARE(statusCommands(box), (QStringList {"statusOn", "statusOff", "statusOff"}));
    box.close();
    QTRY_VERIFY(!device->isConnected());
    QCOMPARE(button->text(), QStringLiteral("Тарвело не найден"));
    QCOMPARE(button->icon().cacheKey(), disconnectedIcon);
}

QTEST_MAIN(WidgetsTest)
#include "tst_widgets.moc"
