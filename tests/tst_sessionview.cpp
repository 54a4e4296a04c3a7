#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/TarveloDevice.h"
#include "frame/PlayScriptStopSessionButton.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"
#include "ui/MainWindow.h"
#include "ui/PageScript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QtTest>

namespace {
constexpr int WinMs = 8000;
// A played script at the emulator's pace, upload and start delay included.
constexpr int PlayMs = 60000;

const QString Finished = QStringLiteral("Завершено");

// Three stages of six steps, long enough to be stopped in the middle at a moderate speed.
QStringList trialStages()
{
    const QString stage =
        QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=0;"
                       "[s=1,t=1500,d=1000][s=2,t=1500,d=1000][s=3,t=1500,d=1000]"
                       "[s=4,t=1500,d=1000][s=0,t=1500,d=1000][s=1,t=1500,d=1000]");
    return {stage, stage, stage};
}

// The state of the play/stop stack in one header, as the operator sees it.
enum class Shown { Play, PlayDisabled, Stop };

Shown shown(PlayScriptStopSessionButton *stack)
{
    if (stack->currentWidget() == stack->stopButton())
        return Shown::Stop;
    return stack->playButton()->isEnabled() ? Shown::Play : Shown::PlayDisabled;
}
} // namespace

class SessionViewTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void playNeedsAScriptAndALink();
    void playComesBackWithTheLink();
    void playUploadsAndTheStopButtonAborts();
    void demoScriptPlaysToItsEnd();
    void lostLinkKeepsTheStopButton();
    void recordBoxAndExportFollowTheSession();
    void reportsInABurstShowOnceWithTheLatestState();
    void widgetWithoutModelShowsAStoredSession();
    void nullModelBuildsOnlyTheHeader();
    void scriptPickedInOneHeaderShowsInBoth();

private:
    struct Window
    {
        MainWindow window;
        PageScript *scriptPage;
        PageSession *sessionPage;
        Window();
        TarveloModel *model() { return window.model(); }
        QList<PlayScriptStopSessionButton *> stacks() const
        {
            return {scriptPage->playButton(), sessionPage->playButton()};
        }
        TarveloSessionWidget *view() const { return sessionPage->sessionWidget(); }
    };
    // Both headers show the same; returns that.
    static bool bothShow(const Window &w, Shown expected);

    TestDataFolder m_data;
};

SessionViewTest::Window::Window()
    : scriptPage(qobject_cast<PageScript *>(window.page(MainWindow::ScriptPage)))
    , sessionPage(qobject_cast<PageSession *>(window.page(MainWindow::SessionPage)))
{
    window.setWindowState(Qt::WindowNoState);
    window.resize(1000, 700);
    window.show();
}

bool SessionViewTest::bothShow(const Window &w, Shown expected)
{
    const QList<PlayScriptStopSessionButton *> stacks = w.stacks();
    for (PlayScriptStopSessionButton *stack : stacks) {
        if (shown(stack) != expected)
            return false;
    }
    return true;
}

void SessionViewTest::initTestCase()
{
    QVERIFY(m_data.isValid());
}

void SessionViewTest::init()
{
    m_data.clear();
    setExtraPorts({});
}

void SessionViewTest::playNeedsAScriptAndALink()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    Window w;
    PlayScriptStopSessionButton *stack = w.scriptPage->playButton();
    QCOMPARE(stack->count(), 2);
    QCOMPARE(stack->widget(0), stack->stopButton());
    QCOMPARE(stack->widget(1), stack->playButton());
    QCOMPARE(stack->playButton()->objectName(), QStringLiteral("positive"));
    QCOMPARE(stack->stopButton()->objectName(), QStringLiteral("negative"));
    QCOMPARE(stack->stopButton()->toolTip(), QStringLiteral("Прервать сессию"));
    QVERIFY(bothShow(w, Shown::PlayDisabled)); // neither script nor link

    QTRY_VERIFY_WITH_TIMEOUT(w.model()->device()->isConnected(), WinMs);
    QVERIFY(bothShow(w, Shown::PlayDisabled)); // a link, but no script
    QTest::mouseClick(stack->playButton(), Qt::LeftButton);
    QVERIFY(!box.commands().join(' ').contains(QStringLiteral("scriptHeader")));

    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), trialStages()));
    w.model()->reloadScripts();
    QVERIFY(w.model()->currentScript());
    QVERIFY(bothShow(w, Shown::Play));
    QCOMPARE(stack->playButton()->toolTip(), QStringLiteral("Воспроизвести сценарий"));

    box.close();
    QTRY_VERIFY(!w.model()->device()->isConnected());
    QVERIFY(bothShow(w, Shown::PlayDisabled));
}

void SessionViewTest::playComesBackWithTheLink()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), trialStages()));
    // The box is unplugged after its first answers and plugged in again, where it gets a name
    // of its own: the old port object holds on to the old name.
    QTemporaryDir linkFolder;
    const QString link = linkFolder.filePath(QStringLiteral("ttyUSB0"));
    const QString replugged = linkFolder.filePath(QStringLiteral("ttyUSB1"));
    EmulatorProcess first;
    QVERIFY(first.start({"--link", link, "--drop-after", "3"}));
    setExtraPorts({link, replugged});
    Window w;
    // Two seconds leave the greeting, which goes out a second after a port opens, its answer.
    w.model()->device()->setSearchInterval(2);
    // What the headers show right after each change of the link.
    QList<bool> links;
    QList<bool> playable;
    connect(w.model()->device(), &TarveloDevice::connectedChanged, this, [&](bool connected) {
        links << connected;
        playable << bothShow(w, Shown::Play);
    });
    QTRY_COMPARE_WITH_TIMEOUT(links.size(), 2, WinMs);
    QCOMPARE(links, (QList<bool> {true, false}));
    QCOMPARE(playable, (QList<bool> {true, false}));
    QVERIFY(bothShow(w, Shown::PlayDisabled));
    QVERIFY(first.waitForExit());

    EmulatorProcess second;
    QVERIFY(second.start({"--link", replugged}));
    QTRY_COMPARE_WITH_TIMEOUT(links.size(), 3, WinMs);
    QCOMPARE(playable.last(), true);
    QVERIFY(bothShow(w, Shown::Play));
}

void SessionViewTest::playUploadsAndTheStopButtonAborts()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), trialStages()));
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--speed", "2"}));
    setExtraPorts({emulator.path()});
    Window w;
    TarveloModel *model = w.model();
    QTRY_VERIFY_WITH_TIMEOUT(bothShow(w, Shown::Play), WinMs);
    QSignalSpy started(model, &TarveloModel::sessionStarted);

    QTest::mouseClick(w.scriptPage->playButton()->playButton(), Qt::LeftButton);
    // The upload has gone out by the time the click returns; the start follows a second later.
    QVERIFY(emulator.commands().contains(QStringLiteral("stopAddStage")));
    QVERIFY(!emulator.commands().contains(QStringLiteral("startScript")));
    QTRY_VERIFY_WITH_TIMEOUT(started.count() == 1, WinMs);
    QCOMPARE(emulator.count(QStringLiteral("startScript")), 1);
    QCOMPARE(w.window.tabs()->currentIndex(), int(MainWindow::SessionPage));
    QVERIFY(bothShow(w, Shown::Stop));
    QVERIFY(w.sessionPage->playButton()->stopButton()->isEnabled());

    // Stopped once the box has reported a step of the first stage.
    QTRY_VERIFY_WITH_TIMEOUT(!model->session()->stages().isEmpty()
                                 && !model->session()->stages().constFirst()->steps().isEmpty(),
                             WinMs);
    QVERIFY(w.view()->reportHtml().contains(QStringLiteral("/6</td>")));
    QTest::mouseClick(w.sessionPage->playButton()->stopButton(), Qt::LeftButton);
    QVERIFY(!model->sessionRunning());
    QVERIFY(model->session()->finished());
    QVERIFY(bothShow(w, Shown::Play));
    QTRY_COMPARE(emulator.count(QStringLiteral("stop")), 1);
    QTRY_VERIFY(emulator.reports().contains(QStringLiteral("scriptFinished")));

    // The aborted run is kept like a finished one.
    QCOMPARE(m_data.allSessionFiles().size(), 1);
    QVERIFY(w.view()->reportHtml().contains(Finished));
    QVERIFY(!w.view()->exportButton()->isHidden());
}

void SessionViewTest::demoScriptPlaysToItsEnd()
{
    QVERIFY(m_data.copyScript(QStringLiteral(TARVELO_DEMO_SCRIPT)));
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--speed", "50"}));
    setExtraPorts({emulator.path()});
    Window w;
    TarveloModel *model = w.model();
    QCOMPARE(model->currentScriptTitle(), QStringLiteral("Демо"));
    QCOMPARE(w.scriptPage->scriptCombo()->currentText(), QStringLiteral("Демо"));
    QTRY_VERIFY_WITH_TIMEOUT(bothShow(w, Shown::Play), WinMs);
    QSignalSpy finished(model, &TarveloModel::sessionFinished);

    w.window.tabs()->setCurrentIndex(MainWindow::DevicePage);
    QTest::mouseClick(w.scriptPage->playButton()->playButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, PlayMs);
    QCOMPARE(w.window.tabs()->currentIndex(), int(MainWindow::SessionPage));
    QCOMPARE(emulator.reports().constFirst(), QStringLiteral("iamtarvelo"));
    QVERIFY(emulator.reports().contains(QStringLiteral("scriptStarted=Демо")));
    QCOMPARE(emulator.reports().last(), QStringLiteral("scriptFinished"));
    QVERIFY(model->session()->stages().size() >= 4);
    QVERIFY(w.view()->titleLabel()->text().contains(QStringLiteral("Демо")));
    QVERIFY(w.view()->reportHtml().contains(Finished));
    QVERIFY(!w.view()->exportButton()->isHidden());
    QVERIFY(w.view()->recordCheckBox()->isHidden());
    QVERIFY(!w.view()->exportTable().isEmpty());
    QCOMPARE(m_data.allSessionFiles().size(), 1);
    QVERIFY(bothShow(w, Shown::Play));
}

void SessionViewTest::lostLinkKeepsTheStopButton()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), trialStages()));
    EmulatorProcess emulator;
    // Greeting, serial number, version, then the script's start, its first stage and its first
    // step: then the cable goes. (What is still in the terminal when it goes is lost.)
    QVERIFY(emulator.start({"--speed", "2", "--drop-after", "7"}));
    setExtraPorts({emulator.path()});
    Window w;
    TarveloModel *model = w.model();
    QTRY_VERIFY_WITH_TIMEOUT(bothShow(w, Shown::Play), WinMs);
    QSignalSpy started(model, &TarveloModel::sessionStarted);
    QTest::mouseClick(w.scriptPage->playButton()->playButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(started.count() == 1, WinMs);
    QTRY_VERIFY_WITH_TIMEOUT(!model->device()->isConnected(), WinMs);

    QVERIFY(model->sessionRunning());
    QVERIFY(bothShow(w, Shown::Stop));
    QVERIFY(w.sessionPage->playButton()->stopButton()->isEnabled());
    QVERIFY(!w.view()->recordCheckBox()->isHidden());

    QTest::mouseClick(w.sessionPage->playButton()->stopButton(), Qt::LeftButton);
    QVERIFY(!model->sessionRunning());
    QVERIFY(bothShow(w, Shown::PlayDisabled));
    QVERIFY(!w.view()->exportButton()->isHidden());
    QCOMPARE(m_data.allSessionFiles().size(), 1);
}

void SessionViewTest::recordBoxAndExportFollowTheSession()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    Window w;
    TarveloModel *model = w.model();
    TarveloSessionWidget *view = w.view();
    QCheckBox *record = view->recordCheckBox();
    QCOMPARE(record->text(), QStringLiteral("Не записывать результаты"));
    QCOMPARE(view->exportButton()->text(), QStringLiteral("Экспорт"));
    QTRY_VERIFY_WITH_TIMEOUT(model->device()->isConnected(), WinMs);
    w.window.tabs()->setCurrentIndex(MainWindow::SessionPage);

    // No session yet: the box alone, an empty report.
    QVERIFY(!record->isHidden());
    QVERIFY(!record->isChecked());
    QVERIFY(view->exportButton()->isHidden());
    QVERIFY(view->titleLabel()->isHidden());
    QVERIFY(view->reportHtml().isEmpty());
    // A tick without a session ticks the box and nothing else; the next update puts it back.
    QTest::mouseClick(record, Qt::LeftButton);
    QVERIFY(record->isChecked());

    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_VERIFY(model->sessionRunning());
    QCOMPARE(view->session(), model->session());
    QVERIFY(!record->isChecked());
    QVERIFY(!record->isHidden());
    QVERIFY(view->exportButton()->isHidden());
    QVERIFY(!view->titleLabel()->isHidden());
    QVERIFY(view->titleLabel()->text().contains(QStringLiteral("Проба")));

    box.send(QStringLiteral("stageStarted=0"));
    box.send(QStringLiteral("stageItems=2"));
    box.send(QStringLiteral("r=412;b=2;b2=2;s=1;t=1500;d=1000"));
    QTRY_VERIFY(view->reportHtml().contains(QStringLiteral("1/2</td>")));

    // Ticked during the run, then aborted: nothing is written, the report stays for export.
    QTest::mouseClick(record, Qt::LeftButton);
    QVERIFY(record->isChecked());
    QVERIFY(model->session()->doNotRecord());
    QTest::mouseClick(w.sessionPage->playButton()->stopButton(), Qt::LeftButton);
    QTRY_VERIFY(box.commands().contains(QStringLiteral("stop")));
    QVERIFY(m_data.allSessionFiles().isEmpty());
    QVERIFY(view->reportHtml().contains(Finished));
    QVERIFY(view->reportHtml().contains(QStringLiteral("1/2</td>")));
    QVERIFY(!view->exportButton()->isHidden());
    QVERIFY(record->isHidden());
    QVERIFY(!view->titleLabel()->isHidden());
    TarveloSession *first = model->session();

    // The next run has a session of its own: the box shows that one's choice, unticked.
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_VERIFY(model->session() != first);
    QVERIFY(!record->isChecked());
    QVERIFY(!record->isHidden());
    QVERIFY(view->exportButton()->isHidden());
    QVERIFY(!view->reportHtml().contains(Finished));
    QVERIFY(first->doNotRecord());
    box.send(QStringLiteral("scriptFinished"));
    QTRY_VERIFY(!model->sessionRunning());
    QCOMPARE(m_data.allSessionFiles().size(), 1);
    delete first;
}

void SessionViewTest::reportsInABurstShowOnceWithTheLatestState()
{
    TarveloModel model;
    TarveloSessionWidget live(&model);
    // The start shows at once.
    model.handleDeviceMessage(QStringLiteral("scriptStarted=Проба"));
    QVERIFY(live.titleLabel()->text().contains(QStringLiteral("Проба")));
    const QString started = live.reportHtml();

    // The box's reports, faster than frames: the view waits for the last of them.
    for (const char *message : {"stageStarted=0", "stageItems=3", "r=400;b=2;s=1;t=1500;d=1000",
                                "r=500;b=2;s=1;t=1500;d=1000", "r=600;b=2;s=1;t=1500;d=1000"})
        model.handleDeviceMessage(QString::fromLatin1(message));
    QCOMPARE(live.reportHtml(), started);
    QTRY_VERIFY(live.reportHtml().contains(QStringLiteral("3/3</td>")));

    // The end shows at once, with the Export button.
    model.handleDeviceMessage(QStringLiteral("r=700;b=2;s=1;t=1500;d=1000"));
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
    QVERIFY(live.reportHtml().contains(QStringLiteral("4/3</td>")));
    QVERIFY(live.reportHtml().contains(Finished));
    QVERIFY(!live.exportButton()->isHidden());
}

void SessionViewTest::widgetWithoutModelShowsAStoredSession()
{
    // The live view of a model beside a view without one, as on the subject page.
    TarveloModel model;
    TarveloSessionWidget live(&model);
    TarveloSessionWidget stored(nullptr);
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(stored.exportButton()->isHidden());
    QVERIFY(stored.titleLabel()->isHidden());

    TarveloSession *loaded =
        TarveloSession::load(QStringLiteral(TARVELO_TEST_DATA "/example.session"));
    loaded->setLoaded(true);
    stored.setSession(loaded);
    QCOMPARE(stored.session(), loaded);
    QVERIFY(!stored.titleLabel()->isHidden());
    const QString title = stored.titleLabel()->text();
    QVERIFY(title.contains(QStringLiteral("Проба")));
    QVERIFY(!stored.exportButton()->isHidden());
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(!stored.reportHtml().isEmpty());
    QVERIFY(!stored.reportHtml().contains(Finished)); // not stored in the file
    QVERIFY(!stored.exportTable().isEmpty());

    // Whatever is set, a widget without a model never offers the box.
    TarveloSession running;
    stored.setSession(&running);
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(stored.exportButton()->isHidden());
    running.setFinished(true);
    stored.updateReport();
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(!stored.exportButton()->isHidden());

    stored.setSession(loaded);
    stored.setSession(nullptr);
    QVERIFY(stored.titleLabel()->isHidden());
    QCOMPARE(stored.titleLabel()->text(), title); // the old text waits in the hidden label
    QVERIFY(stored.exportButton()->isHidden());
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(stored.reportHtml().isEmpty());

    // The live view was never touched by any of it.
    QCOMPARE(live.session(), nullptr);
    QVERIFY(!live.recordCheckBox()->isHidden());
    QVERIFY(live.exportButton()->isHidden());
    QVERIFY(live.exportTable().isEmpty());
    delete loaded;
}

void SessionViewTest::nullModelBuildsOnlyTheHeader()
{
    PageSession page(nullptr);
    QCOMPARE(page.sessionWidget(), nullptr);
    QVERIFY(page.scriptCombo());
    QCOMPARE(page.playButton()->count(), 0);
    QCOMPARE(page.scriptCombo()->count(), 0);
}

void SessionViewTest::scriptPickedInOneHeaderShowsInBoth()
{
    for (const char *title : {"Альфа", "Бета", "Гамма"})
        QVERIFY(m_data.writeScript(QString::fromUtf8(title), trialStages()));
    Window w;
    TarveloModel *model = w.model();
    QComboBox *scriptCombo = w.scriptPage->scriptCombo();
    QComboBox *sessionCombo = w.sessionPage->scriptCombo();
    QCOMPARE(scriptCombo->count(), 3);
    QCOMPARE(scriptCombo->currentText(), model->currentScriptTitle());
    QVERIFY(!scriptCombo->itemIcon(0).isNull());

    sessionCombo->setCurrentIndex(2); // as the operator's pick does
    QCOMPARE(model->currentScriptTitle(), QStringLiteral("Гамма"));
    QCOMPARE(scriptCombo->currentIndex(), 2);
    QCOMPARE(sessionCombo->currentIndex(), 2);

    // The current script deleted from outside stays the model's choice, but the list no
    // longer has it: the combos show nothing rather than another script.
    QVERIFY(QFile::remove(m_data.scripts() + QStringLiteral("Гамма.script")));
    model->reloadScripts();
    QCOMPARE(scriptCombo->count(), 2);
    QCOMPARE(scriptCombo->currentIndex(), -1);
    QCOMPARE(sessionCombo->currentIndex(), -1);
    // Picking one again works as before.
    scriptCombo->setCurrentIndex(0);
    QCOMPARE(model->currentScriptTitle(), QStringLiteral("Альфа"));
    QCOMPARE(sessionCombo->currentIndex(), 0);
}

QTEST_MAIN(SessionViewTest)
#include "tst_sessionview.moc"
