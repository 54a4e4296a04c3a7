#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "device/TarveloDevice.h"
#include "foundation/DesktopShell.h"
#include "frame/PlayScriptStopSessionButton.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/SessionReportView.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/ModalAnswerer.h"
#include "support/ReadBack.h"
#include "support/SessionFixtures.h"
#include "support/TestDataFolder.h"
#include "ui/MainWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <functional>
#include <memory>

namespace {
const QString Finished = QStringLiteral("Завершено");
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString TrialStage = "rpt=0;" + QStringLiteral("[s=1,t=1500,d=1000]").repeated(6);
const QStringList TrialStages {TrialStage, TrialStage, TrialStage};

PlayScriptStopSessionButton *stack(MainWindow &window, MainWindow::Page page)
{
    return qobject_cast<HeaderedWidget *>(window.page(page))->playButton();
}

// The play/stop stacks of both headers, as the operator sees them: "play", "off" (play is
// disabled), "stop", or "mixed" when the two differ.
QString shown(MainWindow &window)
{
    QStringList states;
    for (MainWindow::Page page : {MainWindow::ScriptPage, MainWindow::SessionPage}) {
        const PlayScriptStopSessionButton *both = stack(window, page);
        states << (both->currentWidget() == both->stopButton() ? "stop"
                       : both->playButton()->isEnabled()       ? "play"
                                                               : "off");
    }
    return states.first() == states.last() ? states.first() : QStringLiteral("mixed");
}

TarveloSessionWidget *view(MainWindow &window)
{
    return qobject_cast<PageSession *>(window.page(MainWindow::SessionPage))->sessionWidget();
}

// The session view with its save dialog answered by the test: it keeps what the dialog was
// offered and answers with a file name (empty: cancelled) and, when set, a filter.
class AnsweredView : public TarveloSessionWidget
{
public:
    using TarveloSessionWidget::TarveloSessionWidget;
    QString answer;
    QString answerFilter;
    std::function<void()> whileOpen; // runs inside the dialog, as the event loop would
    QString offered;

protected:
    QString chooseExportFile(const QString &path, const QStringList &filters,
                             QString *selectedFilter) override
    {
        offered = path + " | " + *selectedFilter + " of " + filters.join(", ");
        if (whileOpen)
            whileOpen();
        if (!answerFilter.isEmpty())
            *selectedFilter = answerFilter;
        return answer;
    }
};

// The number of pages, or -1 if any is not A4.
int a4Pages(const QString &path)
{
    QProcess tool;
    tool.start(QStringLiteral("pdfinfo"), {"-f", "1", "-l", "1000", path});
    tool.waitForFinished(60000);
    const QString info = QString::fromUtf8(tool.readAllStandardOutput());
    const int pages = info.count(QRegularExpression(QStringLiteral("Page +\\d+ size")));
    const QRegularExpression a4(
        QStringLiteral("size: +595(\\.\\d+)? x 84[12](\\.\\d+)? pts \\(A4\\)"));
    return info.count(a4) == pages ? pages : -1;
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
    void reportsInABurstShowOnceWithTheLatestState();
    void exportDialog_data() { TestFiles::addRows(QStringLiteral("tables/export_dialog.txt")); }
    void exportDialog();
    void exportFiles_data() { TestFiles::addRows(QStringLiteral("tables/export_files.txt")); }
    void exportFiles();
    void pdfHasTheHeadingsAndTheReportOnA4Pages();
    void exportShowsTheSessionOfTheMomentItWasAskedFor();

private:
    // A view without a model, for the application's model, showing the finished report session.
    AnsweredView *exportingView();

    TestDataFolder m_data;
    std::unique_ptr<TarveloModel> m_model;
    std::unique_ptr<AnsweredView> m_view;
    std::unique_ptr<TarveloSession> m_session;
    std::unique_ptr<QTemporaryDir> m_out;
    QStringList m_launched;
    std::unique_ptr<ModalAnswerer> m_answers;
};

void SessionViewTest::initTestCase()
{
    QVERIFY(m_data.isValid());
    DesktopShell::setInterceptor([this](DesktopShell::Action action, const QString &path) {
        m_launched << (action == DesktopShell::Action::OpenFile ? "OpenFile " : "ShowInFolder ")
                + path;
    });
}

void SessionViewTest::init()
{
    m_data.clear();
    setExtraPorts({});
    m_out = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(m_out->filePath("kept")) && QDir().mkpath(m_out->filePath("other")));
    m_launched.clear();
    m_answers = std::make_unique<ModalAnswerer>();
}

void SessionViewTest::cleanup()
{
    m_view.reset();
    m_model.reset();
}

void SessionViewTest::headersFollowTheScriptTheLinkAndTheSession()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    for (const char *title : {"Альфа", "Бета"})
        QVERIFY(m_data.writeScript(QString::fromUtf8(title), TrialStages));
    MainWindow window;
    window.show();
    TarveloModel *model = window.model();
    QCOMPARE(shown(window), "off"); // no link yet
    QTRY_VERIFY_WITH_TIMEOUT(model->device()->isConnected(), WinMs);
    QCOMPARE(shown(window), "play");

    // A script picked in one header shows in both. The current script deleted from outside: the
    // list no longer has it and shows nothing.
    auto *scripts =
        qobject_cast<HeaderedWidget *>(window.page(MainWindow::ScriptPage))->scriptCombo();
    auto *sessionScripts =
        qobject_cast<HeaderedWidget *>(window.page(MainWindow::SessionPage))->scriptCombo();
    QCOMPARE(scripts->count(), 2);
    sessionScripts->setCurrentIndex(sessionScripts->findText(QStringLiteral("Бета")));
    QCOMPARE(scripts->currentText(), QStringLiteral("Бета"));
    QVERIFY(QFile::remove(m_data.scripts() + QStringLiteral("Бета.script")));
    model->reloadScripts();
    QCOMPARE(scripts->count(), 1);
    QCOMPARE(sessionScripts->currentIndex(), -1);
    scripts->setCurrentIndex(0);
    QCOMPARE(model->currentScriptTitle(), QStringLiteral("Альфа"));

    // No session yet: the box alone, an empty report. A tick without a session ticks the box
    // and nothing else; the next update puts it back.
    TarveloSessionWidget *live = view(window);
    QCheckBox *record = live->recordCheckBox();
    QVERIFY(!record->isHidden() && live->exportButton()->isHidden());
    QVERIFY(live->titleLabel()->isHidden() && live->reportHtml().isEmpty());
    QTest::mouseClick(record, Qt::LeftButton);
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_COMPARE(shown(window), "stop");
    QCOMPARE(window.tabs()->currentIndex(), int(MainWindow::SessionPage));
    QVERIFY(!record->isChecked() && !record->isHidden() && live->exportButton()->isHidden());
    QVERIFY(live->titleLabel()->text().contains(QStringLiteral("Проба")));
    for (const char *report : {"stageStarted=0", "stageItems=2", "r=412;b=2;s=1;t=1500;d=1000"})
        box.send(QString::fromLatin1(report));
    QTRY_VERIFY(live->reportHtml().contains(QStringLiteral("1/2</td>")));

    // Ticked during the run, then stopped: nothing is written, the report stays for export.
    QTest::mouseClick(record, Qt::LeftButton);
    QTest::mouseClick(stack(window, MainWindow::SessionPage)->stopButton(), Qt::LeftButton);
    QTRY_VERIFY(box.commands().contains(QStringLiteral("stop")));
    QCOMPARE(shown(window), "play");
    QVERIFY(live->reportHtml().contains(Finished));
    QVERIFY(!live->exportButton()->isHidden() && record->isHidden());
    // The button takes the box's place in the head row, above the report.
    QTRY_VERIFY(live->exportButton()->y() < live->reportView()->mapTo(live, QPoint()).y());
    const std::unique_ptr<TarveloSession> first(model->session());

    // The next run has a session of its own: the box shows that one's choice, unticked.
    box.send(QStringLiteral("scriptStarted=Проба"));
    QTRY_VERIFY(model->session() != first.get());
    QVERIFY(!record->isChecked() && !record->isHidden() && live->exportButton()->isHidden());
    box.send(QStringLiteral("scriptFinished"));
    QTRY_COMPARE(m_data.allSessionFiles().size(), 1);
    box.close();
    QTRY_COMPARE(shown(window), "off");
}

AnsweredView *SessionViewTest::exportingView()
{
    m_model = std::make_unique<TarveloModel>();
    // The subject is the application's, also for a view without a model of its own.
    m_data.addSubject(QStringLiteral("Сидоров"), Guid);
    m_model->reloadUsers();
    m_model->selectUser(Guid);
    m_view = std::make_unique<AnsweredView>(nullptr);
    m_session.reset(SessionFixtures::reportSession());
    m_view->setSession(m_session.get());
    m_view->exportSession(); // still running: no dialog
    m_session->setFinished(true);
    m_view->updateReport();
    return m_view.get();
}

void SessionViewTest::exportDialog()
{
    QFETCH(QString, folder);
    QFETCH(QString, filter);
    QFETCH(QString, offeredFolder);
    QFETCH(QString, offeredFilter);
    TestFiles::write(m_out->filePath("kept/file"), "x");
    AnsweredView *view = exportingView();
    QVERIFY(view->offered.isEmpty());
    m_model->settings()->setLastExportFolder(folder.isEmpty() ? folder : m_out->filePath(folder));
    m_model->settings()->setLastExportFilter(filter);
    const QByteArray stored = m_data.storedSettings();
    // The operator switches to PDF, then cancels.
    view->answerFilter = QStringLiteral("PDF (*.pdf)");
    view->exportSession();
    const QString expectedFolder =
        offeredFolder == "documents" ? m_data.documents() : m_out->filePath(offeredFolder);
    QCOMPARE(view->offered,
             expectedFolder + "/Сидоров - Проба - 2024-03-05 14.20"
                 + offeredFilter.section('*', 1).chopped(1) + " | " + offeredFilter
                 + " of XLSX (*.xlsx), CSV (*.csv), PDF (*.pdf)");
    QCOMPARE(m_data.storedSettings(), stored);
    QVERIFY(m_launched.isEmpty() && m_answers->messages.isEmpty());
}

void SessionViewTest::exportFiles()
{
    QFETCH(QString, name);
    QFETCH(QString, filter);
    QFETCH(QString, behavior);
    QFETCH(QByteArray, start);
    QFETCH(QString, launched);
    QFETCH(bool, warning);
    QFETCH(QString, remembered);
    AnsweredView *view = exportingView();
    QVERIFY(m_model->settings()->setTextValue(QStringLiteral("ExportBehavior"), behavior));
    view->answer = m_out->filePath(name);
    view->answerFilter = filter;
    view->exportSession();
    // The name stands as typed, and the filter alone decides the format.
    const QByteArray bytes = QFileInfo(view->answer).isFile() ? TestFiles::read(view->answer) : "";
    QVERIFY2(bytes.startsWith(start) && bytes.isEmpty() == start.isEmpty(), bytes.left(40));
    QCOMPARE(m_launched,
             launched.isEmpty() ? QStringList() : QStringList {launched + ' ' + view->answer});
    QCOMPARE(m_answers->messages.size(), warning ? 2 : 0); // a title and a text
    // With the system's reason after the name.
    QVERIFY(m_answers->messages.value(1).startsWith(
        warning ? "Ошибка сохранения \"" + view->answer + "\": " : QString()));
    // Remembered before writing, so a failed write still moves the folder.
    TarveloSettings stored;
    QVERIFY(stored.reload());
    QCOMPARE(stored.getLastExportFolder(), m_out->filePath(remembered));
    QCOMPARE(stored.getLastExportFilter(), filter);
}

void SessionViewTest::pdfHasTheHeadingsAndTheReportOnA4Pages()
{
    AnsweredView *view = exportingView();
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    view->answer = m_out->filePath(QStringLiteral("report.pdf"));
    view->answerFilter = QStringLiteral("PDF (*.pdf)");
    view->exportSession();
    const QString text = pdfText(view->answer);
    QVERIFY2(text.startsWith("Сидоров Сессия Проба (2024/03/05 14:20) №"), qPrintable(text));
    // Figures of the stage table, the statistics and the matrix, as the report shows them.
    for (const char *figure :
         {"3/3", "2/4", "0.800", "0.370", "nan", "1.29", "Требуемая реакция", "Завершено"})
        QVERIFY2(text.contains(QString::fromUtf8(figure)), figure);
    const int pages = a4Pages(view->answer);
    QVERIFY(pages > 0);

    // A long session without a subject: one heading, every stage on A4 pages.
    m_model->selectUser(QString());
    for (int i = 0; i < 60; ++i)
        m_session->addStage(SessionFixtures::stage(i, 30, "+1", {}));
    view->updateReport();
    view->exportSession();
    QVERIFY(pdfText(view->answer).startsWith("Сессия Проба (2024/03/05 14:20) №"));
    QCOMPARE(pdfText(view->answer).count(QStringLiteral("0/30")), 60);
    QVERIFY(a4Pages(view->answer) > pages);
}

// The live view exports what it showed when asked, also if the box starts the next run while
// the dialog is open.
void SessionViewTest::exportShowsTheSessionOfTheMomentItWasAskedFor()
{
    exportingView();
    AnsweredView live(m_model.get());
    live.answer = m_out->filePath(QStringLiteral("live.csv"));
    live.answerFilter = QStringLiteral("CSV (*.csv)");
    for (const char *report : {"scriptStarted=Проба", "stageStarted=0", "stageItems=1",
                               "r=400;s=3;b=3;t=1000;d=1000", "scriptFinished"})
        m_model->handleDeviceMessage(QString::fromUtf8(report));
    live.whileOpen = [this] {
        m_model->handleDeviceMessage(QStringLiteral("scriptStarted=Другой"));
        m_model->handleDeviceMessage(QStringLiteral("stageStarted=7"));
    };
    live.exportSession();
    QCOMPARE(live.session()->scriptTitle(), QStringLiteral("Другой"));
    const QByteArray exported = TestFiles::read(live.answer);
    QVERIFY(exported.contains("\r\n1;Этап 0;1;1;0;0;0;") && !exported.contains("Этап 7"));
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

QTEST_MAIN(SessionViewTest)
#include "tst_sessionview.moc"
