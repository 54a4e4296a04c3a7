// Faults an operator meets, with real parts: the data folder's files, a read-only folder, a
// file size limit, the emulator and boxes the test speaks for on real pseudo-terminals.
// Nothing recorded may be lost or half written, and every failure is said.
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/TarveloDevice.h"
#include "device/widgets/TarveloStatusBar.h"
#include "foundation/FileUtilities.h"
#include "frame/PlayScriptStopSessionButton.h"
#include "session/SessionExport.h"
#include "session/SessionRecorder.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/SessionStatusLine.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/ModalAnswerer.h"
#include "support/ReadBack.h"
#include "support/TestDataFolder.h"
#include "ui/MainWindow.h"

#include <QJsonDocument>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabWidget>
#include <QtTest>

#include <memory>
#include <optional>

namespace {
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QStringList Stage0 {"scriptStarted=Проба", "stageStarted=0", "stageItems=1",
                          "r=400;b=3;s=3;t=900;d=100", "stageAction=+1"};
const QStringList Stage1 {"stageStarted=1", "stageItems=2", "r=300;b=0;s=0;t=900;d=100",
                          "stageAction=+1", "stageStarted=2"};

// The stages in a session file, read by Qt's parser alone; -1 without a file.
int storedStages(const QString &path)
{
    return QFile::exists(path) ? TestDataFolder::readJson(path).value("stages").toArray().size()
                               : -1;
}

} // namespace

class FaultsTest : public QObject
{
    Q_OBJECT
    TestDataFolder m_data;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<ModalAnswerer> m_answers;

    TarveloModel *model() const { return m_window->model(); }
    void play(const QStringList &reports)
    {
        for (const QString &report : reports)
            model()->handleDeviceMessage(report);
    }
    QString sessionPath() const { return model()->recorder()->savePath(); }
    PageSession *page() const
    {
        return qobject_cast<PageSession *>(m_window->page(MainWindow::SessionPage));
    }
    PlayScriptStopSessionButton *playButtons(MainWindow::Page page) const
    {
        return qobject_cast<HeaderedWidget *>(m_window->page(page))->playButton();
    }
    QString statusLine() const { return page()->sessionWidget()->statusLine()->text(); }
    QString notice() const { return m_window->tarveloStatusBar()->notice()->text(); }

private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init()
    {
        m_data.clear();
        setExtraPorts({});
        m_answers = std::make_unique<ModalAnswerer>();
    }
    void cleanup() { m_window.reset(); }
    void sessionOnDisk_data() { TestFiles::addRows(QStringLiteral("tables/session_on_disk.txt")); }
    void sessionOnDisk();
    void pulledCableKeepsTheRunUntilTheBoxIsBack();
    void markupFromTheBoxStaysText();
    void exportKeepsTheEarlierFile_data()
    {
        TestFiles::addRows(QStringLiteral("tables/export_over_a_file.txt"));
    }
    void exportKeepsTheEarlierFile();
    void unusableDataFolderIsSaidAndNothingGoesElsewhere();
};

void FaultsTest::sessionOnDisk()
{
    QFETCH(QString, fault);
    QFETCH(QString, ending);
    QFETCH(bool, yes);
    QFETCH(QList<int>, stored);
    QFETCH(QString, reason);
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    const QString folder = m_data.addSubject(QStringLiteral("Иванов"), Guid);
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QTRY_VERIFY_WITH_TIMEOUT(model()->device()->isConnected(), WinMs);
    model()->selectUser(Guid);
    if (fault == "blocked")
        QVERIFY(QDir(folder).removeRecursively() && TestFiles::write(folder.chopped(1), "x"));
    // Root may write into any folder, but not into an immutable one.
    const auto unlock = qScopeGuard([&folder] { QProcess::execute("chattr", {"-i", folder}); });
    if (fault == "read-only") {
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        QProcess::execute("chattr", {"+i", folder});
    }
    play(Stage0);
    const QString path = sessionPath();
    QCOMPARE(storedStages(path), stored[0]);
    const QByteArray first = TestFiles::read(path);
    std::optional<TestFiles::FileSizeLimit> limit;
    if (fault == "limit")
        limit.emplace(first.size() + 16);
    play(Stage1);
    QCOMPARE(storedStages(path), stored[1]);
    m_answers->answer = yes ? QString() : QStringLiteral("no");
    if (ending == "finish")
        play({"scriptFinished"});
    else if (ending == "close")
        m_window->close();
    else
        page()->playButton()->stopButton()->click();
    // Aborted, the stage under way is kept as well; a file that can't grow stays as it was.
    QCOMPARE(storedStages(path), stored[2]);
    // Written stage by stage, the file is still the session's JSON as Qt writes it.
    if (stored[2] == 3)
        QCOMPARE(TestFiles::read(path), QJsonDocument(model()->session()->toJson()).toJson());
    if (fault == "limit")
        QCOMPARE(TestFiles::read(path), first);
    const bool asked = ending != "finish";
    QCOMPARE(model()->sessionRunning(), asked && !yes);
    QCOMPARE(m_window->isVisible(), !(ending == "close" && yes));

    // A failure is said once for the run, naming the file and the reason, and stays in view.
    const QString name = QFileInfo(path).fileName();
    const QStringList &messages = m_answers->messages; // title and text of each
    QTRY_COMPARE(messages.size(), 2 * (int(asked) + int(!reason.isEmpty())));
    if (reason.isEmpty()) {
        QVERIFY(statusLine().startsWith("Сохранено") && statusLine().contains(name));
    } else {
        QVERIFY2(messages.last().contains(name) && messages.last().contains(reason),
                 qPrintable(messages.last()));
        QVERIFY(statusLine().contains("Не сохранено") && statusLine().contains(reason));
    }
    // Nothing half written is left beside it.
    QStringList left = QDir(QFileInfo(path).path()).entryList(QDir::Files | QDir::Hidden);
    left.removeOne(TarveloUser::fileName());
    QCOMPARE(left, stored[2] >= 0 ? QStringList {name} : QStringList());
    m_window.reset();
    QTRY_COMPARE(box.commands().count("stop"), int(asked && yes));
}

// The cable goes in the second stage, the box comes back under another name: the run goes on,
// and the operator's stop still reaches it.
void FaultsTest::pulledCableKeepsTheRunUntilTheBoxIsBack()
{
    QTemporaryDir dir;
    const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
    const QString replugged = dir.filePath(QStringLiteral("ttyUSB1"));
    EmulatorProcess first;
    // The link, the upload's answers, stage 0 and the start of stage 1: then the cable goes.
    QVERIFY(first.start({"--link", link, "--speed", "4", "--drop-after", "13"}));
    setExtraPorts({link, replugged});
    const QString longStage = "rpt=0;" + QString("[s=2,t=800,d=800]").repeated(40);
    QVERIFY(m_data.writeScript("Проба", {"rpt=0;[s=1,t=500,d=200]", longStage}));
    m_data.writeSettings("<DeviceSearchTimeout>2</DeviceSearchTimeout>");
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QTRY_VERIFY_WITH_TIMEOUT(model()->device()->isConnected(), WinMs);
    QTest::mouseClick(playButtons(MainWindow::ScriptPage)->playButton(), Qt::LeftButton);
    // The upload has gone out by the time the click returns; the start follows later.
    QVERIFY(first.commands().contains(QStringLiteral("stopAddStage")));
    QVERIFY(!first.commands().contains(QStringLiteral("startScript")));

    QTRY_VERIFY_WITH_TIMEOUT(!model()->device()->isConnected(), WinMs);
    QCOMPARE(storedStages(sessionPath()), 1);
    QVERIFY(statusLine().contains(QStringLiteral("Связь с устройством потеряна")));
    PlayScriptStopSessionButton *stack = playButtons(MainWindow::SessionPage);
    QCOMPARE(stack->currentWidget(), stack->stopButton());
    EmulatorProcess second;
    QVERIFY(second.start({"--link", replugged}));
    QTRY_VERIFY_WITH_TIMEOUT(model()->device()->isConnected(), WinMs);
    // Found by the first pass that saw it: greeted once.
    QCOMPARE(second.commands().count(QStringLiteral("tarvelo")), 1);
    QVERIFY(!statusLine().contains(QStringLiteral("потеряна")) && model()->sessionRunning());
    QTest::mouseClick(stack->stopButton(), Qt::LeftButton);
    QTRY_COMPARE(second.commands().count(QStringLiteral("stop")), 1);
    QCOMPARE(storedStages(sessionPath()), 2);
    QVERIFY(stack->currentWidget() == stack->playButton() && stack->playButton()->isEnabled());
    QVERIFY(!page()->sessionWidget()->exportButton()->isHidden());
}

// Markup in the box's words is shown and printed as the text it is.
void FaultsTest::markupFromTheBoxStaysText()
{
    const QString title = QStringLiteral("</h3><h1 style=\"color: red\">Гром</h1>");
    m_window = std::make_unique<MainWindow>();
    model()->device()->receive("{scriptStarted=" + title.toUtf8()
                               + "}{stageStarted=0}{stageAction=<b>}{scriptFinished}");
    QCOMPARE(TestDataFolder::readJson(sessionPath()).value("scriptTitle").toString(), title);
    const TarveloSessionWidget *view = page()->sessionWidget();
    QVERIFY(view->titleLabel()->text().contains(title.toHtmlEscaped()));
    QVERIFY(view->reportHtml().contains(QStringLiteral(">&lt;b&gt;</span>")));
    QTemporaryDir out;
    const QString pdf = out.filePath(QStringLiteral("report.pdf"));
    const QString subject = QStringLiteral("<i>Иванов</i>");
    QVERIFY(SessionExport::writePdf(
        SessionExport::pdfHtml(*model()->session(), view->reportHtml(), subject), pdf));
    const QString printed = pdfText(pdf);
    QVERIFY2(printed.contains(subject) && printed.contains(title), qPrintable(printed));
}

void FaultsTest::exportKeepsTheEarlierFile()
{
    QFETCH(QString, filter);
    QFETCH(QByteArray, magic);
    QTemporaryDir out;
    m_window = std::make_unique<MainWindow>();
    model()->settings()->setLastExportFolder(out.path());
    model()->settings()->setLastExportFilter(filter);
    play(Stage0 + QStringList {"scriptFinished"});
    model()->session()->setStart(QDateTime(QDate(2026, 11, 23), QTime(8, 42, 10)));
    const QString extension = SessionExport::extension(SessionExport::formatForFilter(filter));
    // Over an earlier export of that name, which the dialog offers.
    const QString file = out.filePath("Проба - 2026-11-23 08.42" + extension);
    QVERIFY(TestFiles::write(file, "an earlier export"));
    QPushButton *exportButton = page()->sessionWidget()->exportButton();
    {
        const TestFiles::FileSizeLimit limit(64);
        exportButton->click();
    }
    // The dialog kept the minutes rather than taking them for a suffix to replace.
    QCOMPARE(m_answers->offered, file);
    QCOMPARE(TestFiles::read(file), QByteArray("an earlier export"));
    QCOMPARE(QDir(out.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QCOMPARE(m_answers->messages,
             (QStringList {QString(), "Ошибка сохранения \"" + file + "\": File too large"}));
    QVERIFY(notice().isEmpty());

    // Written, it is named in the status bar; a desktop without a launcher gives a message.
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(out.path()));
    exportButton->click();
    qputenv("PATH", path);
    QVERIFY(TestFiles::read(file).startsWith(magic));
    QCOMPARE(m_answers->messages.size(), 4);
    QVERIFY(m_answers->messages[3].startsWith("Не удалось открыть \"" + file));
    QVERIFY(notice().contains(QFileInfo(file).fileName()) && notice().contains("<a "));
}

void FaultsTest::unusableDataFolderIsSaidAndNothingGoesElsewhere()
{
    const QString blocker = m_data.root().chopped(1);
    QVERIFY(QDir().mkpath(QFileInfo(blocker).path()) && TestFiles::write(blocker, "in the way"));
    QTemporaryDir startedFrom;
    QVERIFY(QDir::setCurrent(startedFrom.path()));
    m_window = std::make_unique<MainWindow>();
    const QStringList &messages = m_answers->messages;
    QTRY_COMPARE(messages.size(), 2);
    QVERIFY(messages[1].contains(m_data.root()));
    model()->settings()->setDeviceSearchTimeout(7);
    QTRY_COMPARE(messages.size(), 4);
    QVERIFY(messages[3].contains(m_data.settingsFile()));
    QVERIFY(QDir(startedFrom.path()).isEmpty());

    // A relative folder is made where it is named, not inside itself.
    QVERIFY(FileUtilities::createIfNotExists(QStringLiteral("rel/sub")));
    QVERIFY(QDir(startedFrom.filePath("rel/sub")).isEmpty());
    QCOMPARE(QDir(startedFrom.path()).entryList(QDir::NoDotAndDotDot | QDir::Dirs),
             QStringList {"rel"});
    QDir::setCurrent(QDir::tempPath());
    QFile::remove(blocker);
}

QTEST_MAIN(FaultsTest)
#include "tst_faults.moc"
