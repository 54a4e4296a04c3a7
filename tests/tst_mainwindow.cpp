#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "device/TarveloDevice.h"
#include "device/widgets/TarveloStatusBar.h"
#include "foundation/widgets/MediaHelper.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"
#include "ui/AppStyle.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

namespace {
// The greeting goes out a second after a port opened; a win takes a little more than that.
constexpr int WinMs = 8000;

const QString Connected = QStringLiteral(":/resources/Images/connected.svg");
const QString Disconnected = QStringLiteral(":/resources/Images/disconnected.svg");

QPushButton *statusButton(MainWindow &window)
{
    return window.tarveloStatusBar()->findChild<QPushButton *>();
}

QProgressBar *progressBar(MainWindow &window)
{
    return window.tarveloStatusBar()->findChild<QProgressBar *>();
}

QStringList statusCommands(const QStringList &commands)
{
    QStringList found;
    for (const QString &command : commands) {
        if (command == QLatin1String("statusOn") || command == QLatin1String("statusOff"))
            found << command;
    }
    return found;
}
} // namespace

Q_DECLARE_METATYPE(MainWindow::StatusClick)

class MainWindowTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void tabsStandInFixedOrderWithTextsAndIcons();
    void onlyTheDevicePageSwitchesTheStatusStreamOn();
    void sessionStartBringsTheSessionPageToTheFront();
    void statusTextFollowsTheLink();
    void progressShowsDuringAnUploadAndGoesAfter();
    void statusClickAction_data();
    void statusClickAction();
    void plainClickOnTheStatusBarShowsTheDevicePage();
    void versionHolderStaysInTheTopRightCorner();
    void everyTabTakesAClickAtTheSmallestSize();
    void startsMaximizedAsTheSettingsSay();

private:
    TestDataFolder m_data;
};

void MainWindowTest::initTestCase()
{
    QVERIFY(m_data.isValid());
    // The program's own look, since sizes and places depend on it.
    AppStyle::apply(*qApp);
}

void MainWindowTest::init()
{
    m_data.clear();
    setExtraPorts({});
}

void MainWindowTest::tabsStandInFixedOrderWithTextsAndIcons()
{
    MainWindow window;
    QTabWidget *tabs = window.tabs();
    const QStringList texts {"Сценарии", "Сессия", "Респонденты", "Устройство", "Настройки"};
    const QStringList icons {"script", "experiment", "group", "device", "settings"};
    QCOMPARE(tabs->count(), texts.size());
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tabs->iconSize(), QSize(24, 24));
    for (int i = 0; i < tabs->count(); ++i) {
        QCOMPARE(tabs->tabText(i), texts.at(i));
        const QIcon icon = tabs->tabIcon(i);
        QVERIFY2(!icon.isNull(), qPrintable(texts.at(i)));
        // The cache hands out one icon per path: the same key means the same resource.
        const QIcon expected =
            MediaHelper::icon(QStringLiteral(":/resources/Images/%1.svg").arg(icons.at(i)));
        QCOMPARE(icon.cacheKey(), expected.cacheKey());
    }
    const char *const classes[] = {"PageScript", "PageSession", "PageDatabase", "PageDevice",
                                   "PageSettings"};
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget *page = window.page(MainWindow::Page(i));
        QCOMPARE(page->metaObject()->className(), classes[i]);
        QVERIFY(tabs->widget(i)->isAncestorOf(page));
    }
}

void MainWindowTest::onlyTheDevicePageSwitchesTheStatusStreamOn()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--speed", "20"}));
    setExtraPorts({emulator.path()});
    MainWindow window;
    QTabWidget *tabs = window.tabs();
    // Without a link the switch has nowhere to go, and that is all.
    tabs->setCurrentIndex(MainWindow::DevicePage);
    tabs->setCurrentIndex(MainWindow::ScriptPage);
    QTRY_VERIFY_WITH_TIMEOUT(window.model()->device()->isConnected(), WinMs);
    QCOMPARE(statusCommands(emulator.commands()), QStringList());

    const QList<int> indices {3, 2, 3, 4, 0, 3, 1};
    for (int index : indices)
        tabs->setCurrentIndex(index);
    const QStringList expected {"statusOn",  "statusOff", "statusOn", "statusOff",
                                "statusOff", "statusOn",  "statusOff"};
    QTRY_COMPARE(statusCommands(emulator.commands()), expected);
}

void MainWindowTest::sessionStartBringsTheSessionPageToTheFront()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    MainWindow window;
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(window.model()->device()->isConnected(), WinMs);
    QTabWidget *tabs = window.tabs();
    QSignalSpy started(window.model(), &TarveloModel::sessionStarted);

    for (int page : {0, 2, 3, 4, 1}) {
        const bool moved = tabs->currentIndex() != page;
        box.clearCommands();
        tabs->setCurrentIndex(page);
        if (moved) // the switch of the stream that this change itself sends
            QTRY_COMPARE(statusCommands(box.commands()).size(), 1);
        box.clearCommands();
        box.send(QStringLiteral("scriptStarted=Проба"));
        QTRY_COMPARE(started.count(), 1);
        QCOMPARE(tabs->currentIndex(), int(MainWindow::SessionPage));
        // Any page but the device page had the stream off already; leaving the device page
        // switches it off. Staying on the session page sends nothing.
        if (page != MainWindow::SessionPage)
            QTRY_COMPARE(statusCommands(box.commands()), QStringList {"statusOff"});
        box.send(QStringLiteral("scriptFinished"));
        QTRY_VERIFY(!window.model()->sessionRunning());
        started.clear();
    }
    QCOMPARE(statusCommands(box.commands()), QStringList());
}

void MainWindowTest::statusTextFollowsTheLink()
{
    FakeBox box; // answers the greeting only: serial number and version wait for the test
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    MainWindow window;
    TarveloDevice *device = window.model()->device();
    QPushButton *button = statusButton(window);
    QVERIFY(button);
    QCOMPARE(button->text(), QStringLiteral("Тарвело не найден"));
    QCOMPARE(button->icon().cacheKey(), MediaHelper::icon(Disconnected).cacheKey());
    QCOMPARE(button->iconSize(), QSize(24, 24));
    QVERIFY(button->isFlat());

    // What the bar says right after each of the signals it follows.
    QStringList texts;
    const auto record = [&] {
        texts << button->text();
    };
    connect(device, &TarveloDevice::connectedChanged, this, record);
    connect(device, &TarveloDevice::gotPortName, this, record);
    connect(device, &TarveloDevice::gotSerialNumber, this, record);
    connect(device, &TarveloDevice::gotVersion, this, record);

    QTRY_VERIFY_WITH_TIMEOUT(device->isConnected(), WinMs);
    QTRY_COMPARE(texts.size(), 2);
    const QString port = device->portName();
    QVERIFY(!port.isEmpty());
    QCOMPARE(texts.at(0), QStringLiteral("Тарвело подключен"));
    QCOMPARE(texts.at(1), QStringLiteral("Тарвело подключен (%1)").arg(port));
    QCOMPARE(button->icon().cacheKey(), MediaHelper::icon(Connected).cacheKey());

    box.send(QStringLiteral("sn=250101"));
    QTRY_COMPARE(texts.size(), 3);
    QCOMPARE(texts.last(), QStringLiteral("Тарвело подключен (SN:250101, %1)").arg(port));
    box.send(QStringLiteral("version=3.1"));
    QTRY_COMPARE(texts.size(), 4);
    QCOMPARE(texts.last(), QStringLiteral("Тарвело подключен (SN:250101, v3.1, %1)").arg(port));

    box.close();
    QTRY_VERIFY(!device->isConnected());
    QCOMPARE(button->text(), QStringLiteral("Тарвело не найден"));
    QCOMPARE(button->icon().cacheKey(), MediaHelper::icon(Disconnected).cacheKey());
    QCOMPARE(device->serialNumber(), QStringLiteral("250101"));
}

void MainWindowTest::progressShowsDuringAnUploadAndGoesAfter()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    MainWindow window;
    TarveloDevice *device = window.model()->device();
    QProgressBar *bar = progressBar(window);
    QVERIFY(bar);
    QVERIFY(bar->isHidden());
    QCOMPARE(bar->height(), 24);
    QTRY_VERIFY_WITH_TIMEOUT(device->isConnected(), WinMs);

    struct Tick
    {
        int progress;
        bool shown;
        int value;
    };
    QList<Tick> ticks;
    connect(device, &TarveloDevice::loadProgress, this, [&](int progress) {
        ticks << Tick {progress, !bar->isHidden(), bar->value()};
    });
    TarveloScript script;
    script.setTitle(QStringLiteral("Проба"));
    for (int i = 0; i < 3; ++i)
        script.addStage(ScriptStage::fromText(QStringLiteral(
            "stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=0;[s=1,t=100,d=100][s=2,t=100,d=100]")));
    device->uploadScript(&script, -1, true);

    QVERIFY(ticks.size() > 3);
    QCOMPARE(ticks.last().progress, -1);
    QVERIFY(!ticks.last().shown);
    QVERIFY(bar->isHidden());
    for (int i = 0; i < ticks.size() - 1; ++i) {
        if (ticks.at(i).progress < 0)
            continue;
        QVERIFY(ticks.at(i).shown);
        QCOMPARE(ticks.at(i).value, ticks.at(i).progress);
    }
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 100);
}

void MainWindowTest::statusClickAction_data()
{
    using Action = MainWindow::StatusClick;
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<Action>("action");
    QTest::newRow("none") << int(Qt::NoModifier) << Action::ShowDevicePage;
    QTest::newRow("shift") << int(Qt::ShiftModifier) << Action::ShowDevicePage;
    QTest::newRow("shift+alt, no control")
        << int(Qt::ShiftModifier | Qt::AltModifier) << Action::ShowDevicePage;
    QTest::newRow("control") << int(Qt::ControlModifier) << Action::DeviceSettings;
    QTest::newRow("control+shift")
        << int(Qt::ControlModifier | Qt::ShiftModifier) << Action::DeviceSettings;
    QTest::newRow("control+alt") << int(Qt::ControlModifier | Qt::AltModifier)
                                 << Action::DeviceSettings;
    QTest::newRow("control+shift+alt")
        << int(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier)
        << Action::DeviceSettingsWithSerial;
    QTest::newRow("control+shift+alt+meta")
        << int(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier)
        << Action::DeviceSettingsWithSerial;
    QTest::newRow("keypad control")
        << int(Qt::ControlModifier | Qt::KeypadModifier) << Action::DeviceSettings;
}

void MainWindowTest::statusClickAction()
{
    QFETCH(int, modifiers);
    QFETCH(MainWindow::StatusClick, action);
    QCOMPARE(MainWindow::statusClickAction(Qt::KeyboardModifiers(modifiers)), action);
}

void MainWindowTest::plainClickOnTheStatusBarShowsTheDevicePage()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.tabs()->setCurrentIndex(MainWindow::SettingsPage);
    QTest::mouseClick(statusButton(window), Qt::LeftButton);
    QCOMPARE(window.tabs()->currentIndex(), int(MainWindow::DevicePage));
}

void MainWindowTest::versionHolderStaysInTheTopRightCorner()
{
    MainWindow window;
    QWidget *holder = window.versionHolder();
    QVERIFY(holder);
    QCOMPARE(holder->parentWidget(), &window);
    QCOMPARE(holder->size(), QSize(200, 32));
    QCOMPARE(holder->contentsMargins(), QMargins(0, 8, 8, 0));
    window.setWindowState(Qt::WindowNoState);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.minimumSize(), QSize(800, 600));

    const QList<QSize> sizes {{1024, 700}, {800, 600}, {1600, 900}, {901, 1200}, {500, 300}};
    for (const QSize &size : sizes) {
        window.resize(size);
        const int width = qMax(size.width(), 800);
        QTRY_COMPARE(window.width(), width);
        QCOMPARE(holder->x() + holder->width(), width);
        QCOMPARE(holder->y(), 0);
    }
    // Above everything else, so the tab row never covers it.
    QCOMPARE(window.children().last(), holder);
}

void MainWindowTest::everyTabTakesAClickAtTheSmallestSize()
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

void MainWindowTest::startsMaximizedAsTheSettingsSay()
{
    MainWindow window;
    QVERIFY(window.windowState() & Qt::WindowMaximized);
}

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
