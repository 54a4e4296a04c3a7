#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/TarveloDevice.h"
#include "foundation/DesktopShell.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/PlayScriptStopSessionButton.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/SessionFixtures.h"
#include "support/TestDataFolder.h"
#include "support/XlsxReadBack.h"
#include "ui/MainWindow.h"
#include "ui/PageScript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QtTest>

#include <functional>
#include <memory>

using namespace SessionFixtures;

namespace {
constexpr int WinMs = 8000;
constexpr int PlayMs = 30000;
const QString Finished = QStringLiteral("Завершено");
const QString Xlsx = QStringLiteral("XLSX (*.xlsx)");
const QString Csv = QStringLiteral("CSV (*.csv)");
const QString Pdf = QStringLiteral("PDF (*.pdf)");
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");

// Three stages of six steps, long enough to be cut in the middle.
QStringList trialStages()
{
    const QString stage =
        QStringLiteral("rpt=0;") + QStringLiteral("[s=1,t=1500,d=1000]").repeated(6);
    return {stage, stage, stage};
}

// The state of the play/stop stacks of both headers, as the operator sees them.
enum class Shown { Play, PlayDisabled, Stop, Mixed };

// The window with its two headed pages.
struct Window
{
    Window()
        : scriptPage(qobject_cast<PageScript *>(window.tabs()->widget(MainWindow::ScriptPage)))
        , sessionPage(qobject_cast<PageSession *>(window.tabs()->widget(MainWindow::SessionPage)))
    {
        window.setWindowState(Qt::WindowNoState);
        window.resize(1000, 700);
        window.show();
    }
    TarveloModel *model() { return window.model(); }
    TarveloSessionWidget *view() const { return sessionPage->sessionWidget(); }
    static Shown shownBy(PlayScriptStopSessionButton *stack)
    {
        if (stack->currentWidget() == stack->stopButton())
            return Shown::Stop;
        return stack->playButton()->isEnabled() ? Shown::Play : Shown::PlayDisabled;
    }
    Shown shown() const
    {
        const Shown first = shownBy(scriptPage->playButton());
        return first == shownBy(sessionPage->playButton()) ? first : Shown::Mixed;
    }
    void click(bool play) const
    {
        PlayScriptStopSessionButton *stack =
            play ? scriptPage->playButton() : sessionPage->playButton();
        QTest::mouseClick(play ? stack->playButton() : stack->stopButton(), Qt::LeftButton);
    }

    MainWindow window;
    PageScript *scriptPage;
    PageSession *sessionPage;
};

// The session view with its save dialog answered by the test: it keeps what the dialog was
// offered and answers with a file name (empty: cancelled) and, when set, a filter.
class AnsweredView : public TarveloSessionWidget
{
public:
    using TarveloSessionWidget::TarveloSessionWidget;
    QString answer;
    QString answerFilter;
    std::function<void()> whileOpen; // runs inside the dialog, as the event loop would
    int dialogs = 0;
    QString offeredPath;
    QString offeredFilter;

protected:
    QString chooseExportFile(const QString &path, const QStringList &filters,
                             QString *selectedFilter) override
    {
        ++dialogs;
        offeredPath = path;
        offeredFilter = *selectedFilter;
        if (filters != QStringList {Xlsx, Csv, Pdf})
            return QString();
        if (whileOpen)
            whileOpen();
        if (!answerFilter.isEmpty())
            *selectedFilter = answerFilter;
        return answer;
    }
};

// Standard output of a finished tool, or null when it failed.
QString runTool(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return QString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList pdfLines(const QString &path)
{
    const QString text = runTool(QStringLiteral("pdftotext"), {"-enc", "UTF-8", path, "-"});
    QStringList lines;
    for (const QString &line : text.split('\n')) {
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();
    }
    return lines;
}

// Every page of the PDF is A4; false if it has fewer pages.
bool a4Pages(const QString &path, int pages)
{
    const QString info = runTool(QStringLiteral("pdfinfo"), {"-f", "1", "-l", "1000", path});
    const int a4 = info.count(
        QRegularExpression("Page +\\d+ size: +595(\\.\\d+)? x 84[12](\\.\\d+)? pts \\(A4\\)"));
    return a4 >= pages && a4 == info.count(QRegularExpression("Page +\\d+ size"));
}
} // namespace

class SessionViewTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void headersFollowTheScriptTheLinkAndTheSession();
    void lostLinkKeepsTheStopButtonUntilClicked();
    void demoScriptPlaysToItsEnd();
    void viewWithoutModelShowsAStoredSession();

    void offeredFolderAndFilterFallBack_data();
    void offeredFolderAndFilterFallBack();
    void chosenFolderAndFilterAreRemembered();
    void exportWritesWhatTheFilterSays_data();
    void exportWritesWhatTheFilterSays();
    void failedWriteWarnsAndStillMovesTheFolder();
    void pdfHasTheHeadingsAndTheReportOnA4();
    void exportShowsTheSessionOfTheMomentItWasAskedFor();

private:
    AnsweredView *exportingView(const QString &answer, const QString &filter);

    TestDataFolder m_data;
    std::unique_ptr<TarveloModel> m_model;
    std::unique_ptr<AnsweredView> m_view;
    std::unique_ptr<QTemporaryDir> m_out;
    QList<QPair<DesktopShell::Action, QString>> m_launched;
    QStringList m_messages;
    QTimer m_messageWatch;
};

void SessionViewTest::initTestCase()
{
    QVERIFY(m_data.isValid());
    // Every message box is answered at once and remembered; none may block a test.
    m_messageWatch.setInterval(10);
    connect(&m_messageWatch, &QTimer::timeout, this, [this] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            m_messages << box->text();
            box->done(0);
        }
    });
    DesktopShell::setInterceptor([this](DesktopShell::Action action, const QString &path) {
        m_launched.append({action, path});
    });
}

void SessionViewTest::init()
{
    m_data.clear();
    setExtraPorts({});
    m_out = std::make_unique<QTemporaryDir>();
    m_launched.clear();
    m_messages.clear();
    m_messageWatch.start();
}

void SessionViewTest::cleanup()
{
    m_messageWatch.stop();
    m_view.reset();
    m_model.reset();
}

void SessionViewTest::headersFollowTheScriptTheLinkAndTheSession()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    for (const char *title : {"Альфа", "Бета"})
        QVERIFY(m_data.writeScript(QString::fromUtf8(title), trialStages()));
    Window w;
    QCOMPARE(w.shown(), Shown::PlayDisabled); // no link yet
    QTRY_VERIFY_WITH_TIMEOUT(w.model()->device()->isConnected(), WinMs);
    QCOMPARE(w.shown(), Shown::Play);

    // A script picked in one header shows in both.
    QComboBox *scriptCombo = w.scriptPage->scriptCombo();
    QComboBox *sessionCombo = w.sessionPage->scriptCombo();
    QCOMPARE(scriptCombo->count(), 2);
    sessionCombo->setCurrentIndex(sessionCombo->findText(QStringLiteral("Бета")));
    QCOMPARE(w.model()->currentScriptTitle(), QStringLiteral("Бета"));
    QCOMPARE(scriptCombo->currentText(), QStringLiteral("Бета"));
    // The current script deleted from outside: the list no longer has it and shows nothing.
    QVERIFY(QFile::remove(m_data.scripts() + QStringLiteral("Бета.script")));
    w.model()->reloadScripts();
    QCOMPARE(scriptCombo->count(), 1);
    QCOMPARE(sessionCombo->currentIndex(), -1);
    scriptCombo->setCurrentIndex(0);
    QCOMPARE(w.model()->currentScriptTitle(), QStringLiteral("Альфа"));

    // No session yet: the box alone, an empty report. A tick without a session ticks the box
    // and nothing else; the next update puts it back.
    TarveloSessionWidget *view = w.view();
    QCheckBox *record = view->recordCheckBox();
    QVERIFY(!record->isHidden() && view->exportButton()->isHidden());
    QVERIFY(view->titleLabel()->isHidden() && view->reportLabel()->text().isEmpty());
    QTest::mouseClick(record, Qt::LeftButton);
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_VERIFY(w.model()->sessionRunning());
    QCOMPARE(w.shown(), Shown::Stop);
    QCOMPARE(w.window.tabs()->currentIndex(), int(MainWindow::SessionPage));
    QVERIFY(!record->isChecked() && !record->isHidden() && view->exportButton()->isHidden());
    QVERIFY(view->titleLabel()->text().contains(QStringLiteral("Проба")));
    box.send(QStringLiteral("stageStarted=0"));
    box.send(QStringLiteral("stageItems=2"));
    box.send(QStringLiteral("r=412;b=2;s=1;t=1500;d=1000"));
    QTRY_VERIFY(view->reportLabel()->text().contains(QStringLiteral("1/2</td>")));

    // Ticked during the run, then stopped: nothing is written, the report stays for export.
    QTest::mouseClick(record, Qt::LeftButton);
    QVERIFY(w.model()->session()->doNotRecord());
    w.click(false);
    QTRY_VERIFY(box.commands().contains(QStringLiteral("stop")));
    QCOMPARE(w.shown(), Shown::Play);
    QVERIFY(m_data.allSessionFiles().isEmpty());
    QVERIFY(view->reportLabel()->text().contains(Finished));
    QVERIFY(!view->exportButton()->isHidden() && record->isHidden());
    TarveloSession *first = w.model()->session();

    // The next run has a session of its own: the box shows that one's choice, unticked.
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_VERIFY(w.model()->session() != first);
    QVERIFY(!record->isChecked() && !record->isHidden() && view->exportButton()->isHidden());
    box.send(QStringLiteral("scriptFinished"));
    QTRY_COMPARE(m_data.allSessionFiles().size(), 1);
    delete first;

    box.close();
    QTRY_COMPARE(w.shown(), Shown::PlayDisabled);
}

void SessionViewTest::lostLinkKeepsTheStopButtonUntilClicked()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), trialStages()));
    // Greeting, serial number, version, then the start, the first stage, its size and its first
    // step: then the cable goes. The box is plugged in again under a name of its own.
    QTemporaryDir links;
    const QString link = links.filePath(QStringLiteral("ttyUSB0"));
    const QString replugged = links.filePath(QStringLiteral("ttyUSB1"));
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--link", link, "--speed", "2", "--drop-after", "7"}));
    setExtraPorts({link, replugged});
    m_data.writeSettings("<DeviceSearchTimeout>2</DeviceSearchTimeout>");
    Window w;
    QTRY_COMPARE_WITH_TIMEOUT(w.shown(), Shown::Play, WinMs);
    w.click(true);
    // The upload has gone out by the time the click returns; the start follows later.
    QVERIFY(emulator.commands().contains(QStringLiteral("stopAddStage")));
    QVERIFY(!emulator.commands().contains(QStringLiteral("startScript")));
    QTRY_VERIFY_WITH_TIMEOUT(w.model()->sessionRunning(), WinMs);
    QTRY_VERIFY_WITH_TIMEOUT(!w.model()->device()->isConnected(), WinMs);
    QCOMPARE(w.shown(), Shown::Stop);
    QVERIFY(!w.view()->recordCheckBox()->isHidden());

    w.click(false);
    QVERIFY(!w.model()->sessionRunning());
    QCOMPARE(w.shown(), Shown::PlayDisabled);
    QVERIFY(!w.view()->exportButton()->isHidden());
    QCOMPARE(m_data.allSessionFiles().size(), 1);

    EmulatorProcess second;
    QVERIFY(second.start({"--link", replugged}));
    QTRY_COMPARE_WITH_TIMEOUT(w.shown(), Shown::Play, WinMs);
}

void SessionViewTest::demoScriptPlaysToItsEnd()
{
    QVERIFY(m_data.copyScript(QStringLiteral(TARVELO_DEMO_SCRIPT)));
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--speed", "100"}));
    setExtraPorts({emulator.path()});
    Window w;
    QCOMPARE(w.scriptPage->scriptCombo()->currentText(), QStringLiteral("Демо"));
    QTRY_COMPARE_WITH_TIMEOUT(w.shown(), Shown::Play, WinMs);
    QSignalSpy finished(w.model(), &TarveloModel::sessionFinished);
    w.click(true);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    QCOMPARE(emulator.reports().last(), QStringLiteral("scriptFinished"));
    QVERIFY(w.model()->session()->stages().size() >= 4);
    QVERIFY(w.view()->titleLabel()->text().contains(QStringLiteral("Демо")));
    QVERIFY(w.view()->reportLabel()->text().contains(Finished));
    QVERIFY(!w.view()->exportTable().isEmpty());
    QCOMPARE(m_data.allSessionFiles().size(), 1);
}

void SessionViewTest::viewWithoutModelShowsAStoredSession()
{
    // The live view of a model beside a view without one, as on the subject page.
    m_model = std::make_unique<TarveloModel>();
    TarveloSessionWidget live(m_model.get());
    TarveloSessionWidget stored(nullptr);
    QVERIFY(stored.recordCheckBox()->isHidden() && stored.exportButton()->isHidden());
    QVERIFY(stored.titleLabel()->isHidden());

    const std::unique_ptr<TarveloSession> loaded(
        TarveloSession::load(TestFiles::dataPath(QStringLiteral("example.session"))));
    loaded->setLoaded(true);
    stored.setSession(loaded.get());
    QVERIFY(stored.titleLabel()->text().contains(QStringLiteral("Проба")));
    QVERIFY(!stored.titleLabel()->isHidden() && !stored.exportButton()->isHidden());
    QVERIFY(stored.recordCheckBox()->isHidden());
    QVERIFY(!stored.reportLabel()->text().contains(Finished)); // not stored in the file
    QVERIFY(!stored.exportTable().isEmpty());

    // Whatever is set, a view without a model never offers the box.
    TarveloSession running;
    stored.setSession(&running);
    QVERIFY(stored.recordCheckBox()->isHidden() && stored.exportButton()->isHidden());
    stored.setSession(nullptr);
    QVERIFY(stored.titleLabel()->isHidden() && stored.exportButton()->isHidden());
    QVERIFY(stored.reportLabel()->text().isEmpty());
    // The live view was never touched by any of it.
    QVERIFY(!live.recordCheckBox()->isHidden() && !live.session());

    PageSession page(nullptr);
    QCOMPARE(page.sessionWidget(), nullptr);
    QCOMPARE(page.playButton()->count(), 0);
}

AnsweredView *SessionViewTest::exportingView(const QString &answer, const QString &filter)
{
    if (!m_model)
        m_model = std::make_unique<TarveloModel>();
    m_view = std::make_unique<AnsweredView>(nullptr);
    m_view->answer = answer.isEmpty() ? QString() : m_out->filePath(answer);
    m_view->answerFilter = filter;
    return m_view.get();
}

void SessionViewTest::offeredFolderAndFilterFallBack_data()
{
    QTest::addColumn<QString>("folder"); // kept, deleted, file or none
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("offered");
    QTest::newRow("nothing remembered") << "none" << QString() << Xlsx;
    QTest::newRow("folder and PDF") << "kept" << Pdf << Pdf;
    QTest::newRow("deleted folder") << "deleted" << Csv << Csv;
    QTest::newRow("a file, not a folder") << "kept/file" << Csv << Csv;
    QTest::newRow("unknown filter") << "kept"
                                    << "Word (*.docx)" << Xlsx;
    QTest::newRow("filter in another case") << "kept"
                                            << "csv (*.csv)" << Xlsx;
}

// A cancelled dialog: what it was offered, and that nothing changed.
void SessionViewTest::offeredFolderAndFilterFallBack()
{
    QFETCH(QString, folder);
    QFETCH(QString, filter);
    QFETCH(QString, offered);
    QVERIFY(QDir().mkpath(m_out->filePath("kept")));
    TestFiles::write(m_out->filePath("kept/file"), "x");
    AnsweredView *view = exportingView(QString(), Pdf);
    TarveloSettings *settings = m_model->settings();
    settings->setLastExportFolder(folder == "none" ? QString() : m_out->filePath(folder));
    settings->setLastExportFilter(filter);
    // The view of the subject page has no model of its own: the subject is the application's.
    m_data.addSubject(QStringLiteral("Сидоров"), Guid);
    m_model->reloadUsers();
    m_model->selectUser(Guid);
    const QByteArray stored = m_data.storedSettings();
    const std::unique_ptr<TarveloSession> session(reportSession());
    view->setSession(session.get());
    view->exportSession();
    QCOMPARE(view->dialogs, 0); // still running
    session->setFinished(true);
    view->exportSession();
    const QString offeredFolder = folder == "kept" ? m_out->filePath("kept") : m_data.documents();
    QCOMPARE(view->offeredPath, offeredFolder + "/Сидоров - Проба - 2024-03-05 14.20");
    QCOMPARE(view->offeredFilter, offered);
    QCOMPARE(m_data.storedSettings(), stored);
    QVERIFY(m_launched.isEmpty() && m_messages.isEmpty());
}

void SessionViewTest::chosenFolderAndFilterAreRemembered()
{
    QVERIFY(QDir().mkpath(m_out->filePath("chosen")) && QDir().mkpath(m_out->filePath("other")));
    // A detour in the path is not part of the remembered folder.
    AnsweredView *view = exportingView(QStringLiteral("other/../chosen/report.csv"), Csv);
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    QSignalSpy folder(m_model->settings(), &TarveloSettings::changedLastExportFolder);
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    view->setSession(session.get());
    view->exportSession();
    QVERIFY(QFile::exists(m_out->filePath("chosen/report.csv")));
    // Stored at once, for the next start of the program.
    TarveloSettings stored;
    QVERIFY(stored.reload());
    QCOMPARE(stored.getLastExportFolder(), m_out->filePath("chosen"));
    QCOMPARE(stored.getLastExportFilter(), Csv);

    // The next export offers them, and the same choice announces nothing again.
    view->answer = m_out->filePath("chosen/again.csv");
    view->answerFilter.clear();
    view->exportSession();
    QCOMPARE(view->offeredPath, m_out->filePath("chosen/Проба - 2024-03-05 14.20"));
    QCOMPARE(view->offeredFilter, Csv);
    QVERIFY(QFile::exists(view->answer));
    QCOMPARE(folder.count(), 1);
}

void SessionViewTest::exportWritesWhatTheFilterSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<int>("behavior");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<int>("launched"); // DesktopShell::Action, -1 for none
    const QByteArray zip("PK\x03\x04", 4);
    const int openFile = int(DesktopShell::Action::OpenFile);
    QTest::newRow(".csv under XLSX, then opened")
        << "report.csv" << Xlsx << int(TarveloSettings::OnExport_OpenFile) << zip << openFile;
    QTest::newRow(".xlsx under CSV, then shown in the folder")
        << "report.xlsx" << Csv << int(TarveloSettings::OnExport_OpenFolder)
        << QByteArray("\xEF\xBB\xBF"
                      "2024-03-05 14.20\r\n")
        << int(DesktopShell::Action::ShowInFolder);
    QTest::newRow(".csv under PDF, nothing after")
        << "report.csv" << Pdf << int(TarveloSettings::OnExport_DoNothing) << QByteArray("%PDF-")
        << -1;
    // The printer reports nothing back: the action follows all the same.
    QTest::newRow("PDF into a missing folder")
        << "missing/report.pdf" << Pdf << int(TarveloSettings::OnExport_OpenFile) << QByteArray()
        << openFile;
}

void SessionViewTest::exportWritesWhatTheFilterSays()
{
    QFETCH(QString, name);
    QFETCH(QString, filter);
    QFETCH(int, behavior);
    QFETCH(QByteArray, start);
    QFETCH(int, launched);
    AnsweredView *view = exportingView(name, filter);
    m_model->settings()->setExportBehavior(TarveloSettings::ExportBehaviorOption(behavior));
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    view->setSession(session.get());
    view->exportSession();
    // The name stands as typed: nothing is added to it.
    const QByteArray bytes = TestFiles::read(view->answer);
    QVERIFY2(bytes.startsWith(start) && bytes.isEmpty() == start.isEmpty(), bytes.left(16).toHex());
    QCOMPARE(m_launched.size(), launched < 0 ? 0 : 1);
    if (launched >= 0)
        QCOMPARE(m_launched.first(), qMakePair(DesktopShell::Action(launched), view->answer));
    QVERIFY(m_messages.isEmpty());
    if (filter == Xlsx)
        QCOMPARE(readXlsxBack(view->answer).value("active").toString(),
                 QStringLiteral("2024-03-05 14.20"));
}

void SessionViewTest::failedWriteWarnsAndStillMovesTheFolder()
{
    QVERIFY(QDir().mkpath(m_out->filePath("taken")));
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    for (const QString &filter : {Xlsx, Csv}) {
        for (const QString &target : {QStringLiteral("missing/report"), QStringLiteral("taken")}) {
            m_launched.clear();
            m_messages.clear();
            AnsweredView *view = exportingView(target, filter);
            view->setSession(session.get());
            view->exportSession();
            QCOMPARE(m_messages, QStringList {"Ошибка сохранения \"" + view->answer + '"'});
            QVERIFY(m_launched.isEmpty() && !QFileInfo(view->answer).isFile());
            QCOMPARE(m_model->settings()->getLastExportFolder(),
                     QFileInfo(view->answer).absolutePath());
        }
    }
}

void SessionViewTest::pdfHasTheHeadingsAndTheReportOnA4()
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QSKIP("pdfinfo and pdftotext (poppler-utils) read the PDF back");
    m_model = std::make_unique<TarveloModel>();
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    m_data.addSubject(QStringLiteral("Сидоров"), Guid);
    m_model->reloadUsers();
    m_model->selectUser(Guid);
    AnsweredView *view = exportingView(QStringLiteral("report.pdf"), Pdf);
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    view->setSession(session.get());
    view->exportSession();
    QVERIFY(a4Pages(view->answer, 1));
    const QStringList lines = pdfLines(view->answer);
    QVERIFY(lines.size() > 2);
    QCOMPARE(lines.mid(0, 2), (QStringList {"Сидоров", "Сессия Проба (2024/03/05 14:20)"}));
    // Figures of the stage table, the statistics and the matrix, as the report shows them;
    // narrow columns break longer words, so these are short ones.
    for (const char *figure :
         {"3/3", "2/4", "0.800", "0.370", "nan", "1.29", "Требуемая реакция", "Завершено"})
        QVERIFY2(lines.join('\n').contains(QString::fromUtf8(figure)), figure);

    // A long session without a subject: one heading, every stage on A4 pages.
    m_model->selectUser(QString());
    const std::unique_ptr<TarveloSession> large(largeSession(45, 30));
    view->answer = m_out->filePath(QStringLiteral("long.pdf"));
    view->setSession(large.get());
    view->exportSession();
    QVERIFY(a4Pages(view->answer, 2));
    const QString text = pdfLines(view->answer).join('\n');
    QVERIFY(text.startsWith(QStringLiteral("Сессия Длинный сценарий (2024/03/05 14:20)\n№")));
    QCOMPARE(text.count(QStringLiteral("30/30")), 45);
    QVERIFY(text.contains(Finished));
}

// The live view exports what it showed when asked, also if the box starts the next run while
// the dialog is open; a stored session exports the very table of the live one.
void SessionViewTest::exportShowsTheSessionOfTheMomentItWasAskedFor()
{
    m_data.addSubject(QStringLiteral("Сидоров"), Guid);
    m_model = std::make_unique<TarveloModel>();
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    m_model->selectUser(Guid);
    AnsweredView live(m_model.get());
    live.answer = m_out->filePath(QStringLiteral("live.csv"));
    live.answerFilter = Csv;
    for (const char *report :
         {"scriptStarted=Проба", "stageStarted=0", "stageItems=3", "r=400;s=3;b=3;t=1000;d=1000",
          "r=500;s=0;b=1;t=1000;d=1200", "r=-1500;s=13;b=10;t=1500;d=900", "stageAction=+1",
          "stageStarted=1", "stageItems=1", "r=600;s=2;b=4;t=500;d=1000", "scriptFinished"})
        m_model->handleDeviceMessage(QString::fromUtf8(report));
    live.whileOpen = [this] {
        m_model->handleDeviceMessage(QStringLiteral("scriptStarted=Другой"));
        m_model->handleDeviceMessage(QStringLiteral("stageStarted=7"));
    };
    live.exportSession();
    QCOMPARE(live.session()->scriptTitle(), QStringLiteral("Другой"));
    const QByteArray exported = TestFiles::read(live.answer);
    QVERIFY(exported.contains("\r\n1;Этап 0;3;1;0;1;1;"));
    QVERIFY(!exported.contains("Этап 7"));

    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const std::unique_ptr<TarveloSession> stored(
        TarveloSession::load(m_data.records() + files.first()));
    stored->setLoaded(true);
    AnsweredView *page = exportingView(QStringLiteral("stored.csv"), Csv);
    page->setSession(stored.get());
    page->exportSession();
    QCOMPARE(TestFiles::read(page->answer), exported);
}

QTEST_MAIN(SessionViewTest)
#include "tst_sessionview.moc"
