#include "SessionFixtures.h"
#include "XlsxReadBack.h"
#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/DesktopShell.h"
#include "foundation/FileUtilities.h"
#include "foundation/XLSXHelper.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/TestDataFolder.h"

#include <QApplication>
#include <QJsonArray>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>

using namespace SessionFixtures;

namespace {
const QString XlsxFilter = QStringLiteral("XLSX (*.xlsx)");
const QString CsvFilter = QStringLiteral("CSV (*.csv)");
const QString PdfFilter = QStringLiteral("PDF (*.pdf)");
const QString SubjectName = QStringLiteral("Сидоров Пётр Ильич");
const QString ExampleSheet = QStringLiteral("2024-03-05 14.20");
const QString ExampleHeading = QStringLiteral("Сессия Проба (2024/03/05 14:20)");

// A run as the box reports it: a stage of three steps (correct, wrong control, missed) that
// moves on, a one-step stage that is repeated, and the repeat cut short without a transfer.
const QStringList ExampleRun {
    QStringLiteral("scriptStarted=Проба"),
    QStringLiteral("stageStarted=0"),
    QStringLiteral("stageItems=3"),
    QStringLiteral("r=400;s=3;b=3;t=1000;d=1000"),
    QStringLiteral("r=500;s=0;b=1;t=1000;d=1200"),
    QStringLiteral("r=-1500;s=13;b=10;t=1500;d=900"),
    QStringLiteral("stageAction=+1"),
    QStringLiteral("stageStarted=1"),
    QStringLiteral("stageItems=1"),
    QStringLiteral("r=600;s=2;b=4;t=500;d=1000"),
    QStringLiteral("stageAction=repeat"),
    QStringLiteral("stageStarted=1"),
    QStringLiteral("stageItems=2"),
    QStringLiteral("r=300;s=10;b=7;t=800;d=1000"),
    QStringLiteral("scriptFinished"),
};

// The session view with its save dialog answered by the test. It keeps what the dialog was
// offered and answers with a file name (empty: cancelled) and, when one is set, a filter.
class AnsweredSessionWidget : public TarveloSessionWidget
{
public:
    using TarveloSessionWidget::TarveloSessionWidget;

    QString answer;
    QString answerFilter;
    std::function<void()> whileOpen; // runs inside the dialog, as the event loop would
    int dialogs = 0;
    QString offeredPath;
    QStringList offeredFilters;
    QString offeredFilter;

protected:
    QString chooseExportFile(const QString &path, const QStringList &filters,
                             QString *selectedFilter) override
    {
        ++dialogs;
        offeredPath = path;
        offeredFilters = filters;
        offeredFilter = *selectedFilter;
        if (whileOpen)
            whileOpen();
        if (!answerFilter.isEmpty())
            *selectedFilter = answerFilter;
        return answer;
    }
};

struct ShownMessage
{
    QString text;
    QString title;
    QMessageBox::Icon icon;
};

using Launch = QPair<DesktopShell::Action, QString>;

// Standard output of a finished tool, or null when it failed.
QString runTool(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        qWarning() << program << process.readAllStandardError();
        return QString();
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString pdfText(const QString &path)
{
    return runTool(QStringLiteral("pdftotext"),
                   {QStringLiteral("-enc"), QStringLiteral("UTF-8"), path, QStringLiteral("-")});
}

QStringList nonEmptyLines(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();
    }
    return lines;
}

// The size line of every page, as pdfinfo prints it ("595.276 x 841.89 pts (A4)").
QStringList pdfPageSizes(const QString &path)
{
    const QString info = runTool(QStringLiteral("pdfinfo"),
                                 {QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                                  QStringLiteral("100000"), path});
    QStringList sizes;
    const QRegularExpression pageSize(QStringLiteral("^Page\\s+\\d+ size:\\s+(.+)$"),
                                      QRegularExpression::MultilineOption);
    auto it = pageSize.globalMatch(info);
    while (it.hasNext())
        sizes << it.next().captured(1).trimmed();
    return sizes;
}

void verifyA4Pages(const QString &path, int minimumPages)
{
    QVERIFY2(TestFiles::read(path).startsWith("%PDF-"), qPrintable(path));
    const QStringList sizes = pdfPageSizes(path);
    QVERIFY2(sizes.size() >= minimumPages, qPrintable(QString::number(sizes.size())));
    const QRegularExpression a4(QStringLiteral("^595(\\.\\d+)? x 84[12](\\.\\d+)? pts \\(A4\\)$"));
    for (const QString &size : sizes)
        QVERIFY2(a4.match(size).hasMatch(), qPrintable(size));
}

// Cell by cell, kinds included: an int and a double of one value are not the same cell.
void compareTables(const XLSXHelper::Rows &actual, const XLSXHelper::Rows &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int r = 0; r < actual.size(); ++r) {
        QCOMPARE(actual[r].size(), expected[r].size());
        for (int c = 0; c < actual[r].size(); ++c) {
            const QString where = QStringLiteral("row %1 column %2").arg(r + 1).arg(c + 1);
            QVERIFY2(actual[r][c].userType() == expected[r][c].userType(), qPrintable(where));
            QVERIFY2(actual[r][c] == expected[r][c], qPrintable(where));
        }
    }
}
} // namespace

class SessionExportTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void defaultNameIsSubjectScriptAndDate();
    void offeredFolderAndFilterFallBack_data();
    void offeredFolderAndFilterFallBack();
    void cancelledDialogChangesNothing();
    void runningSessionIsNotExported();
    void chosenFolderAndFilterAreRememberedAndOfferedNextTime();
    void failedWriteWarnsAndStillMovesTheFolder_data();
    void failedWriteWarnsAndStillMovesTheFolder();
    void afterExportFollowsTheSetting_data();
    void afterExportFollowsTheSetting();
    void formatFollowsTheFilterAlone_data();
    void formatFollowsTheFilterAlone();
    void exportingTwiceGivesTheSameFile_data();
    void exportingTwiceGivesTheSameFile();
    void pdfHasBothHeadingsAndTheReportOnA4();
    void pdfWithoutSubjectHasOneHeading();
    void longSessionPrintsOnA4Pages();
    void storedSessionExportsTheTableOfTheLiveOne();
    void sessionReplacedWhileTheDialogIsOpenIsNotMixedIn();

private:
    TarveloSettings *settings() const { return m_model->settings(); }
    QString out(const QString &name) const { return m_out->filePath(name); }
    void selectSubject();
    void play(const QStringList &messages);
    bool pdfToolsFound() const;
    QString exportPdf(TarveloSession &session, const QString &name);

    TestDataFolder m_data;
    std::unique_ptr<TarveloModel> m_model;
    std::unique_ptr<TarveloSession> m_session;
    std::unique_ptr<QTemporaryDir> m_out;
    QList<Launch> m_launched;
    QList<ShownMessage> m_messages;
    QTimer m_messageWatch;
};

void SessionExportTest::initTestCase()
{
    QVERIFY(m_data.isValid());

    // Every message box is answered at once and remembered; none may block a test.
    m_messageWatch.setInterval(10);
    connect(&m_messageWatch, &QTimer::timeout, this, [this] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        m_messages.append({box->text(), box->windowTitle(), box->icon()});
        box->done(0);
    });
}

void SessionExportTest::init()
{
    m_data.clear();
    m_model = std::make_unique<TarveloModel>();
    m_session.reset(reportSession());
    m_session->setFinished(true);
    m_out = std::make_unique<QTemporaryDir>();
    QVERIFY(m_out->isValid());
    m_launched.clear();
    DesktopShell::setInterceptor([this](DesktopShell::Action action, const QString &path) {
        m_launched << Launch(action, path);
    });
    m_messages.clear();
    m_messageWatch.start();
}

void SessionExportTest::cleanup()
{
    m_messageWatch.stop();
    DesktopShell::setInterceptor({});
    m_model.reset();
}

void SessionExportTest::selectSubject()
{
    TarveloUser user;
    user.setLastName(QStringLiteral("Сидоров"));
    user.setFirstName(QStringLiteral("Пётр"));
    user.setMiddleName(QStringLiteral("Ильич"));
    user.createGuid();
    user.saveIn(m_model->recordsFolder());
    m_model->reloadUsers();
    m_model->selectUser(user.getGUID());
    QVERIFY(m_model->currentUser());
    QCOMPARE(m_model->currentUser()->fullName(false), SubjectName);
}

void SessionExportTest::play(const QStringList &messages)
{
    for (const QString &message : messages)
        m_model->handleDeviceMessage(message);
}

bool SessionExportTest::pdfToolsFound() const
{
    return !QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty()
        && !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty();
}

// The name's parts and their fallbacks are covered with the name alone; here it only matters
// that the dialog gets the application's subject and the documents folder.
void SessionExportTest::defaultNameIsSubjectScriptAndDate()
{
    selectSubject();
    m_session->setScriptTitle(QStringLiteral("Проба"));
    // The view of the subject page has no model of its own: the subject is the application's.
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.exportSession();
    QCOMPARE(view.dialogs, 1);
    QCOMPARE(view.offeredPath,
             m_data.documents()
                 + QStringLiteral("/Сидоров Пётр Ильич - Проба - 2024-03-05 14.20.xlsx"));
    QCOMPARE(view.offeredFilters, (QStringList {XlsxFilter, CsvFilter, PdfFilter}));
}

void SessionExportTest::offeredFolderAndFilterFallBack_data()
{
    QTest::addColumn<QString>("remembered"); // kept, deleted, file or none
    QTest::addColumn<QString>("storedFilter");
    QTest::addColumn<QString>("expectedFilter");
    QTest::newRow("nothing remembered") << "none" << QString() << XlsxFilter;
    QTest::newRow("folder and CSV") << "kept" << CsvFilter << CsvFilter;
    QTest::newRow("folder and PDF") << "kept" << PdfFilter << PdfFilter;
    QTest::newRow("deleted folder") << "deleted" << CsvFilter << CsvFilter;
    QTest::newRow("a file, not a folder") << "file" << XlsxFilter << XlsxFilter;
    QTest::newRow("unknown filter") << "kept" << QStringLiteral("Word (*.docx)") << XlsxFilter;
    QTest::newRow("filter in another case")
        << "kept" << QStringLiteral("csv (*.csv)") << XlsxFilter;
}

void SessionExportTest::offeredFolderAndFilterFallBack()
{
    QFETCH(QString, remembered);
    QFETCH(QString, storedFilter);
    QFETCH(QString, expectedFilter);
    const QString kept = out(QStringLiteral("kept"));
    QVERIFY(QDir().mkpath(kept));
    QString stored;
    if (remembered == QLatin1String("kept")) {
        stored = kept;
    } else if (remembered == QLatin1String("deleted")) {
        stored = out(QStringLiteral("gone"));
        QVERIFY(QDir().mkpath(stored));
        QVERIFY(QDir(stored).removeRecursively());
    } else if (remembered == QLatin1String("file")) {
        stored = out(QStringLiteral("kept/note.txt"));
        QVERIFY(FileUtilities::writeAtomically(stored, "x"));
    }
    settings()->setLastExportFolder(stored);
    settings()->setLastExportFilter(storedFilter);

    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.exportSession();
    const QString folder = remembered == QLatin1String("kept") ? kept : m_data.documents();
    // The name carries the filter's extension, "*.csv" giving ".csv".
    QCOMPARE(view.offeredPath,
             folder + QStringLiteral("/Проба - 2024-03-05 14.20")
                 + expectedFilter.section(QLatin1Char('*'), 1).chopped(1));
    QCOMPARE(view.offeredFilter, expectedFilter);
}

void SessionExportTest::cancelledDialogChangesNothing()
{
    const QString kept = out(QStringLiteral("kept"));
    QVERIFY(QDir().mkpath(kept));
    settings()->setLastExportFolder(kept);
    settings()->setLastExportFilter(CsvFilter);
    const QByteArray storedBefore =
        TestFiles::read(m_model->rootFolder() + TarveloSettings::fileName());
    QVERIFY(storedBefore.contains("<LastExportFilter>CSV (*.csv)</LastExportFilter>"));
    QSignalSpy folderSpy(settings(), &TarveloSettings::changedLastExportFolder);
    QSignalSpy filterSpy(settings(), &TarveloSettings::changedLastExportFilter);

    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    // The operator switched to PDF and then cancelled.
    view.answerFilter = PdfFilter;
    view.exportSession();

    QCOMPARE(view.dialogs, 1);
    QCOMPARE(settings()->getLastExportFolder(), kept);
    QCOMPARE(settings()->getLastExportFilter(), CsvFilter);
    QCOMPARE(folderSpy.count(), 0);
    QCOMPARE(filterSpy.count(), 0);
    QCOMPARE(TestFiles::read(m_model->rootFolder() + TarveloSettings::fileName()), storedBefore);
    QCOMPARE(QDir(m_out->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList {QStringLiteral("kept")});
    QVERIFY(QDir(kept).isEmpty());
    QVERIFY(m_launched.isEmpty());
    QVERIFY(m_messages.isEmpty());
}

void SessionExportTest::runningSessionIsNotExported()
{
    m_session->setFinished(false);
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.answer = out(QStringLiteral("running.xlsx"));
    view.exportSession();
    QCOMPARE(view.dialogs, 0);
    QVERIFY(!QFile::exists(view.answer));
    QVERIFY(m_launched.isEmpty());
}

void SessionExportTest::chosenFolderAndFilterAreRememberedAndOfferedNextTime()
{
    const QString chosen = out(QStringLiteral("chosen"));
    QVERIFY(QDir().mkpath(chosen));
    QVERIFY(QDir().mkpath(out(QStringLiteral("other"))));
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    QSignalSpy folderSpy(settings(), &TarveloSettings::changedLastExportFolder);
    QSignalSpy filterSpy(settings(), &TarveloSettings::changedLastExportFilter);

    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    // A detour in the path is not part of the remembered folder.
    view.answer = out(QStringLiteral("other/../chosen/report.csv"));
    view.answerFilter = CsvFilter;
    view.exportSession();
    QVERIFY(QFile::exists(out(QStringLiteral("chosen/report.csv"))));
    QCOMPARE(settings()->getLastExportFolder(), chosen);
    QCOMPARE(settings()->getLastExportFilter(), CsvFilter);
    QCOMPARE(folderSpy.count(), 1);
    QCOMPARE(folderSpy.at(0).at(0).toString(), chosen);
    QCOMPARE(filterSpy.count(), 1);
    QCOMPARE(filterSpy.at(0).at(0).toString(), CsvFilter);

    // Stored at once, for the next start of the program.
    TarveloSettings stored;
    QVERIFY(stored.reload());
    QCOMPARE(stored.getLastExportFolder(), chosen);
    QCOMPARE(stored.getLastExportFilter(), CsvFilter);

    // The next export offers them, and the same choice announces nothing again.
    view.answer = out(QStringLiteral("chosen/again.csv"));
    view.answerFilter.clear();
    view.exportSession();
    QCOMPARE(view.offeredPath, chosen + QStringLiteral("/Проба - 2024-03-05 14.20.csv"));
    QCOMPARE(view.offeredFilter, CsvFilter);
    QVERIFY(QFile::exists(view.answer));
    QCOMPARE(folderSpy.count(), 1);
    QCOMPARE(filterSpy.count(), 1);
    QVERIFY(m_messages.isEmpty());
}

void SessionExportTest::failedWriteWarnsAndStillMovesTheFolder_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("folder");
    QTest::newRow("XLSX into a missing folder") << XlsxFilter << "missing/report.xlsx"
                                                << "missing";
    QTest::newRow("CSV into a missing folder") << CsvFilter << "missing/report.csv"
                                               << "missing";
    QTest::newRow("PDF into a missing folder") << PdfFilter << "missing/report.pdf"
                                               << "missing";
    QTest::newRow("XLSX over a folder") << XlsxFilter << "taken"
                                        << "";
    QTest::newRow("CSV over a folder") << CsvFilter << "taken"
                                       << "";
}

void SessionExportTest::failedWriteWarnsAndStillMovesTheFolder()
{
    QFETCH(QString, filter);
    QFETCH(QString, target);
    QFETCH(QString, folder);
    QVERIFY(QDir().mkpath(out(QStringLiteral("taken"))));
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.answer = out(target);
    view.answerFilter = filter;
    view.exportSession();

    QCOMPARE(m_messages.size(), 1);
    // With the system's reason after the name.
    QVERIFY2(
        m_messages[0].text.startsWith(QStringLiteral("Ошибка сохранения \"%1\": ").arg(view.answer))
            && m_messages[0].text.size() > view.answer.size() + 24,
        qPrintable(m_messages[0].text));
    QCOMPARE(m_messages[0].title, QString());
    QCOMPARE(m_messages[0].icon, QMessageBox::Warning);
    QVERIFY(m_launched.isEmpty());
    QVERIFY(!QFileInfo(view.answer).isFile());
    QCOMPARE(settings()->getLastExportFolder(), folder.isEmpty() ? m_out->path() : out(folder));
    QCOMPARE(settings()->getLastExportFilter(), filter);
}

void SessionExportTest::afterExportFollowsTheSetting_data()
{
    QTest::addColumn<int>("behavior");
    QTest::addColumn<QList<int>>("expected"); // DesktopShell::Action values
    QTest::newRow("open file") << int(TarveloSettings::OnExport_OpenFile)
                               << QList<int> {int(DesktopShell::Action::OpenFile)};
    QTest::newRow("open folder") << int(TarveloSettings::OnExport_OpenFolder)
                                 << QList<int> {int(DesktopShell::Action::ShowInFolder)};
    QTest::newRow("do nothing") << int(TarveloSettings::OnExport_DoNothing) << QList<int>();
}

void SessionExportTest::afterExportFollowsTheSetting()
{
    QFETCH(int, behavior);
    QFETCH(QList<int>, expected);
    settings()->setExportBehavior(TarveloSettings::ExportBehaviorOption(behavior));
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.answer = out(QStringLiteral("report.csv"));
    view.answerFilter = CsvFilter;
    view.exportSession();
    QVERIFY(QFile::exists(view.answer));
    QCOMPARE(m_launched.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(int(m_launched[i].first), expected[i]);
        // The file itself, also when only its folder is to be shown: that one selects it.
        QCOMPARE(m_launched[i].second, view.answer);
    }
    QVERIFY(m_messages.isEmpty());
}

void SessionExportTest::formatFollowsTheFilterAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QByteArray>("start");
    const QByteArray zip("PK\x03\x04", 4);
    QTest::newRow(".csv under XLSX") << "report.csv" << XlsxFilter << zip;
    QTest::newRow(".xlsx under CSV") << "report.xlsx" << CsvFilter
                                     << QByteArray("\xEF\xBB\xBF"
                                                   "2024-03-05 14.20\r\n");
    QTest::newRow(".csv under PDF") << "report.csv" << PdfFilter << QByteArray("%PDF-");
    QTest::newRow("no suffix under XLSX") << "report" << XlsxFilter << zip;
}

void SessionExportTest::formatFollowsTheFilterAlone()
{
    QFETCH(QString, name);
    QFETCH(QString, filter);
    QFETCH(QByteArray, start);
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    view.answer = out(name);
    view.answerFilter = filter;
    view.exportSession();

    // The name stands as typed: nothing is added to it.
    QCOMPARE(QDir(m_out->path()).entryList(QDir::Files), QStringList {name});
    const QByteArray bytes = TestFiles::read(view.answer);
    QVERIFY2(bytes.startsWith(start), bytes.left(16).toHex().constData());
    if (filter != XlsxFilter)
        return;
    const QJsonObject workbook = readXlsxBack(view.answer);
    QCOMPARE(workbook[QStringLiteral("active")].toString(), ExampleSheet);
    const QJsonArray cells = workbook[QStringLiteral("sheets")]
                                 .toArray()[0]
                                 .toObject()[QStringLiteral("cells")]
                                 .toArray();
    QVERIFY(cells.size() > 100);
    QCOMPARE(cells[0].toArray(), (QJsonArray {1, 1, "s", QStringLiteral("№")}));
    QVERIFY(cells.contains(QJsonArray {2, 2, "s", QStringLiteral("Этап 0")}));
}

void SessionExportTest::exportingTwiceGivesTheSameFile_data()
{
    QTest::addColumn<QString>("filter");
    QTest::newRow("XLSX") << XlsxFilter;
    QTest::newRow("CSV") << CsvFilter;
}

void SessionExportTest::exportingTwiceGivesTheSameFile()
{
    QFETCH(QString, filter);
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    AnsweredSessionWidget view(nullptr);
    view.setSession(m_session.get());
    const XLSXHelper::Rows table = view.exportTable();
    view.answer = out(QStringLiteral("first"));
    view.answerFilter = filter;
    view.exportSession();
    view.answer = out(QStringLiteral("second"));
    view.exportSession();
    // The table is not used up by an export.
    compareTables(view.exportTable(), table);

    const QByteArray first = TestFiles::read(out(QStringLiteral("first")));
    QVERIFY(!first.isEmpty());
    if (filter == CsvFilter) {
        QCOMPARE(TestFiles::read(out(QStringLiteral("second"))), first);
    } else {
        // A workbook carries the time it was made; its contents are what must not differ.
        const QJsonObject book = readXlsxBack(out(QStringLiteral("first")));
        QVERIFY(!book.isEmpty());
        QCOMPARE(readXlsxBack(out(QStringLiteral("second"))), book);
    }
}

// Exports the session as a PDF through a view without a model, with nothing done afterwards.
QString SessionExportTest::exportPdf(TarveloSession &session, const QString &name)
{
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    AnsweredSessionWidget view(nullptr);
    view.setSession(&session);
    view.answer = out(name);
    view.answerFilter = PdfFilter;
    view.exportSession();
    return view.answer;
}

void SessionExportTest::pdfHasBothHeadingsAndTheReportOnA4()
{
    if (!pdfToolsFound())
        QSKIP("pdfinfo and pdftotext (poppler-utils) are needed to read the PDF back");
    selectSubject();
    const QString pdf = exportPdf(*m_session, QStringLiteral("report.pdf"));
    verifyA4Pages(pdf, 1);
    const QString text = pdfText(pdf);
    const QStringList lines = nonEmptyLines(text);
    QVERIFY2(lines.size() > 2, qPrintable(text));
    QCOMPARE(lines[0], SubjectName);
    QCOMPARE(lines[1], ExampleHeading);
    QCOMPARE(text.count(QStringLiteral("Сессия")), 1);
    // Figures of the stage table, the statistics and the matrix, as the report shows them;
    // narrow columns break longer words, so these are short ones.
    for (const char *figure : {"3/3", "2/4", "0.800", "0.370", "0.125", "nan", "1.29", "0.49",
                               "Требуемая реакция", "Завершено"})
        QVERIFY2(text.contains(QString::fromUtf8(figure)), figure);
    QVERIFY(m_messages.isEmpty());
}

void SessionExportTest::pdfWithoutSubjectHasOneHeading()
{
    if (!pdfToolsFound())
        QSKIP("pdfinfo and pdftotext (poppler-utils) are needed to read the PDF back");
    const QString pdf = exportPdf(*m_session, QStringLiteral("report.pdf"));
    verifyA4Pages(pdf, 1);
    const QStringList lines = nonEmptyLines(pdfText(pdf));
    QVERIFY(lines.size() > 2);
    QCOMPARE(lines[0], ExampleHeading);
    // Next comes the stage table's head, not a second heading; the name recorded in the
    // session is not the subject of the moment and is not printed.
    QVERIFY2(lines[1].startsWith(QStringLiteral("№")), qPrintable(lines[1]));
    QVERIFY(!lines.join(QLatin1Char('\n')).contains(QStringLiteral("Иванов")));
}

void SessionExportTest::longSessionPrintsOnA4Pages()
{
    if (!pdfToolsFound())
        QSKIP("pdfinfo and pdftotext (poppler-utils) are needed to read the PDF back");
    const std::unique_ptr<TarveloSession> session(largeSession(45, 30));
    const QString pdf = exportPdf(*session, QStringLiteral("long.pdf"));
    verifyA4Pages(pdf, 2);
    const QString text = pdfText(pdf);
    QVERIFY(text.startsWith(QStringLiteral("Сессия Длинный сценарий (2024/03/05 14:20)")));
    QVERIFY(text.contains(QStringLiteral("Завершено")));
    // Every stage row made it onto the pages, after the header's word.
    QCOMPARE(text.count(QStringLiteral("Этап")), 45 + 1);
    QCOMPARE(text.count(QStringLiteral("30/30")), 45);
}

void SessionExportTest::storedSessionExportsTheTableOfTheLiveOne()
{
    selectSubject();
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    AnsweredSessionWidget live(m_model.get());
    play(ExampleRun);
    QVERIFY(m_model->session()->finished());
    const XLSXHelper::Rows liveTable = live.exportTable();
    QCOMPARE(liveTable.size(), 3 + 18);

    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const std::unique_ptr<TarveloSession> stored(
        TarveloSession::load(m_data.records() + files.constFirst()));
    stored->setLoaded(true);
    AnsweredSessionWidget page(nullptr);
    page.setSession(stored.get());
    compareTables(page.exportTable(), liveTable);

    // And so the files are the same, byte for byte.
    live.answer = out(QStringLiteral("live.csv"));
    live.answerFilter = CsvFilter;
    live.exportSession();
    page.answer = out(QStringLiteral("stored.csv"));
    page.exportSession();
    QCOMPARE(page.offeredFilter, CsvFilter);
    const QByteArray liveFile = TestFiles::read(live.answer);
    QVERIFY(liveFile.contains("\r\n1;Этап 0;3;1;0;1;1;"));
    QCOMPARE(TestFiles::read(page.answer), liveFile);
}

void SessionExportTest::sessionReplacedWhileTheDialogIsOpenIsNotMixedIn()
{
    if (!pdfToolsFound())
        QSKIP("pdfinfo and pdftotext (poppler-utils) are needed to read the PDF back");
    settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    AnsweredSessionWidget live(m_model.get());
    play(ExampleRun);
    live.answer = out(QStringLiteral("shown.pdf"));
    live.answerFilter = PdfFilter;
    // The box starts the next run while the operator is still choosing a name.
    live.whileOpen = [this] {
        play({QStringLiteral("scriptStarted=Другой"), QStringLiteral("stageStarted=7"),
              QStringLiteral("stageItems=5")});
    };
    live.exportSession();
    QCOMPARE(live.session()->scriptTitle(), QStringLiteral("Другой"));

    const QString text = pdfText(live.answer);
    QVERIFY2(text.contains(QStringLiteral("Сессия Проба (")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("Завершено")));
    QVERIFY(!text.contains(QStringLiteral("Другой")));
    QVERIFY(!text.contains(QStringLiteral("Этап 7")));
}

QTEST_MAIN(SessionExportTest)
#include "tst_sessionexport.moc"
