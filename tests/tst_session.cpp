#include "session/ReportTexts.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"
#include "session/SessionSummary.h"
#include "support/SessionFixtures.h"
#include "support/XlsxReadBack.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace SessionFixtures;

Q_DECLARE_METATYPE(SessionStep::Outcome)

namespace {
TarveloSession *exampleSession()
{
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Проба"));
    session->setUserName(QStringLiteral("Иванов Иван Иванович"));
    session->setUserGUID(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    session->setStart(exampleStart());
    session->setEnd(QDateTime(QDate(2024, 3, 5), QTime(14, 21, 7)));
    session->addStage(
        stage(0, 2, QStringLiteral("+1"),
              {step(3, 3, true, 412, 2000, 1000), step(13, 10, false, 1500, 1500, 700)}));
    return session;
}

// Header and stages of a session in one line, with each stage's counts of correct, late,
// wrong and missed steps.
QString describe(const TarveloSession &session)
{
    QString text = session.scriptTitle() + '|' + session.userName() + '|'
        + session.start().toString(Qt::ISODate);
    for (const SessionStage *stage : session.stages())
        text += QStringLiteral(" [%1:%2:%3:%4/%5/%6/%7]")
                    .arg(stage->index)
                    .arg(stage->stepCount)
                    .arg(stage->action)
                    .arg(stage->correctCount())
                    .arg(stage->lateCount())
                    .arg(stage->errorCount())
                    .arg(stage->missedCount());
    return text;
}

// Every cell with its type; doubles to 15 digits, as a workbook shows them.
QString tableText(const QString &name, const XLSXHelper::Rows &rows)
{
    QString text = QStringLiteral("== ") + name + '\n';
    for (const XLSXHelper::Row &row : rows) {
        QStringList cells;
        for (const QVariant &cell : row)
            cells << QLatin1String(cell.typeName()) + ' '
                    + (cell.userType() == QMetaType::Double
                           ? QString::number(cell.toDouble(), 'g', 15)
                           : cell.toString());
        text += cells.join(QStringLiteral(" | ")) + '\n';
    }
    return text;
}
} // namespace

class SessionTest : public QObject
{
    Q_OBJECT
private slots:
    void exampleIsWrittenByteForByteAndReadsBack();
    void damagedFilesRead_data();
    void damagedFilesRead();
    void saveKeepsToItsFolder();
    void stepsAreClassedMissedBeforeLateBeforeError_data();
    void stepsAreClassedMissedBeforeLateBeforeError();
    void stageValuesByHand();
    void summaryCountsHiddenRowsButNotUnnamedButtons();
    void reportMatchesTheGoldenText();
    void transferMark_data();
    void transferMark();
    void exportTablesMatchTheGoldenFile();
    void exportedFilesMatchTheGoldenFiles();
    void badSheetNamesAndTargetsAreRefused_data();
    void badSheetNamesAndTargetsAreRefused();
    void exportNames_data();
    void exportNames();
};

void SessionTest::exampleIsWrittenByteForByteAndReadsBack()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> built(exampleSession());
    // The required control in the file comes from the stimulus, whatever the step holds.
    built->stages().constFirst()->steps().constFirst()->b2 = 7;
    QVERIFY(built->save(dir.path()));
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("example.session"),
                                     TestFiles::read(dir.filePath(built->fileName()))));
    const std::unique_ptr<TarveloSession> loaded(
        TarveloSession::load(TestFiles::dataPath(QStringLiteral("example.session"))));
    QCOMPARE(loaded->toJson(), built->toJson());
    QCOMPARE(describe(*loaded), describe(*built));
    // The flags belong to the run, not to the file.
    QVERIFY(!loaded->finished() && !loaded->loaded() && !loaded->doNotRecord());
}

void SessionTest::damagedFilesRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("read");
    const QByteArray example = TestFiles::read(TestFiles::dataPath("example.session"));
    const QByteArray header =
        R"({"scriptTitle": "T", "userName": "U", "start": "2024-03-05T14:20:31")";
    QTest::newRow("empty") << QByteArray() << "||";
    QTest::newRow("truncated") << example.left(example.size() / 2) << "||";
    QTest::newRow("garbage") << QByteArray("\x01\xff not json {{{") << "||";
    QTest::newRow("array at the top") << QByteArray(R"([{"scriptTitle": "x"}])") << "||";
    QTest::newRow("stages missing") << header + "}"
                                    << "T|U|2024-03-05T14:20:31";
    QTest::newRow("stages not an array") << header + R"(, "stages": {"index": 1}})"
                                         << "T|U|2024-03-05T14:20:31";
    QTest::newRow("stage entries that are no objects are skipped")
        << QByteArray(R"({"stages": [1, "x", null, [], {"index": 4, "stepCount": 5}, true]})")
        << "|| [4:5::0/0/0/0]";
    // A step of defaults is missed; without "b2" in the file a step can't be right.
    QTest::newRow("step entries that are no objects are steps of defaults") << QByteArray(
        R"({"stages": [{"steps": [5, {"s": 2, "b": 4, "v": true, "r": 3, "t": 5}]}]})")
                                                                            << "|| [0:0::0/0/1/1]";
}

void SessionTest::damagedFilesRead()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, read);
    QTemporaryDir dir;
    QVERIFY(TestFiles::write(dir.filePath(QStringLiteral("x.session")), content));
    const std::unique_ptr<TarveloSession> session(
        TarveloSession::load(dir.filePath(QStringLiteral("x.session"))));
    QCOMPARE(describe(*session), read);
    // What was read writes out as a file that reads back the same.
    const std::unique_ptr<TarveloSession> again(
        TarveloSession::fromJson(QJsonDocument(session->toJson()).toJson()));
    QCOMPARE(again->toJson(), session->toJson());
}

void SessionTest::saveKeepsToItsFolder()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> first(exampleSession());
    const QString folder = dir.filePath(QStringLiteral("Records/Иванов"));
    QVERIFY(first->save(folder)); // made, and the slash added
    TarveloSession second;
    second.setStart(exampleStart());
    second.setScriptTitle(QStringLiteral("Second"));
    QVERIFY(second.save(folder + QLatin1Char('/')));
    // The same second replaces the earlier file.
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList {"2024.03.05-14.20.31.session"});
    const std::unique_ptr<TarveloSession> read(
        TarveloSession::load(folder + "/" + first->fileName()));
    QCOMPARE(read->scriptTitle(), QStringLiteral("Second"));
    // A plain file standing where the folder should be.
    QVERIFY(TestFiles::write(dir.filePath(QStringLiteral("blocker")), "x"));
    QVERIFY(!first->save(dir.filePath(QStringLiteral("blocker"))));
    // A session without a start is named after now.
    const QString name = TarveloSession().fileName();
    QVERIFY2(name.startsWith(QDate::currentDate().toString(QStringLiteral("yyyy.MM."))),
             qPrintable(name));
}

void SessionTest::stepsAreClassedMissedBeforeLateBeforeError_data()
{
    QTest::addColumn<int>("b");
    QTest::addColumn<int>("b2");
    QTest::addColumn<bool>("v");
    QTest::addColumn<int>("r");
    QTest::addColumn<int>("t");
    QTest::addColumn<SessionStep::Outcome>("outcome");
    QTest::newRow("missed wins over late and wrong")
        << 1 << 2 << false << 900 << 500 << SessionStep::Missed;
    QTest::newRow("late wins over wrong") << 1 << 2 << true << 501 << 500 << SessionStep::Late;
    QTest::newRow("wrong control in time") << 1 << 2 << true << 499 << 500 << SessionStep::Error;
    QTest::newRow("the allowed time itself is in time")
        << 2 << 2 << true << 500 << 500 << SessionStep::Correct;
    QTest::newRow("unnamed control is an error")
        << 10 << 2 << true << 100 << 500 << SessionStep::Error;
    QTest::newRow("nothing required and nothing used")
        << 9 << 9 << true << 100 << 500 << SessionStep::Correct;
}

void SessionTest::stepsAreClassedMissedBeforeLateBeforeError()
{
    QFETCH(int, b);
    QFETCH(int, b2);
    QFETCH(bool, v);
    QFETCH(int, r);
    QFETCH(int, t);
    QFETCH(SessionStep::Outcome, outcome);
    SessionStage stage;
    auto *step = new SessionStep;
    step->b = b;
    step->b2 = b2;
    step->v = v;
    step->r = r;
    step->t = t;
    stage.addStep(step);
    QCOMPARE(step->outcome(), outcome);
    const int counts[] = {stage.correctCount(), stage.lateCount(), stage.errorCount(),
                          stage.missedCount()};
    for (int kind = 0; kind < 4; ++kind)
        QCOMPARE(counts[kind], kind == outcome ? 1 : 0);
}

void SessionTest::stageValuesByHand()
{
    // Correct 0.2 s, late 0.9 s, missed 0.35 s, error 0.5 s; allowed 0.8, 0.8, 0.9, 0.9 s.
    const std::unique_ptr<SessionStage> s(
        stage(4, 4, QString(),
              {step(0, 0, true, 200, 800), step(0, 0, true, 900, 800), step(5, 9, false, 350, 900),
               step(1, 0, true, 500, 900)}));
    QCOMPARE(s->speedStep(), 0.85);
    // Every reaction enters M, the missed one too: (0.2 + 0.9 + 0.35 + 0.5) / 4.
    QCOMPARE(s->reactionMean(), 0.4875);
    // Deviations -0.2875, 0.4125, -0.1375, 0.0125; squares add up to 0.271875; / 3.
    QVERIFY(qAbs(s->reactionVariance() - 0.271875 / 3) < 1e-15);
    QCOMPARE(s->reactionSigma(), std::sqrt(s->reactionVariance()));

    const std::unique_ptr<SessionStage> empty(stage(3, 5, QString(), {}));
    QCOMPARE(empty->speedStep(), 0.0);
    QCOMPARE(empty->reactionVariance(), 0.0);
}

void SessionTest::summaryCountsHiddenRowsButNotUnnamedButtons()
{
    TarveloSession session;
    // Stimulus 40 requires nothing (9); the subject used nothing (9) and then control 10.
    session.addStage(stage(
        0, 3, QString(),
        {step(40, 9, true, 100, 500), step(40, 10, true, 100, 500), step(1, -1, true, 100, 500)}));
    const SessionSummary summary(session);
    QCOMPARE(summary.requiredCounts()[9], 2);
    QCOMPARE(summary.reactionMatrix()[9][9], 1);
    QCOMPARE(summary.requiredCounts()[2], 1);
    for (int j = 0; j < SessionSummary::ButtonSlots; ++j)
        QCOMPARE(summary.reactionMatrix()[2][j], 0);
}

void SessionTest::reportMatchesTheGoldenText()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    const SessionReport running(*session);
    // The golden report is kept in readable lines; the report itself has no line breaks.
    QCOMPARE(running.html(),
             QString::fromUtf8(TestFiles::read(TestFiles::dataPath("report_running.html")))
                 .remove('\n'));
    QVERIFY(running.exportTable().isEmpty());
    session->setLoaded(true);
    QCOMPARE(SessionReport(*session).html(), running.html());
    session->setFinished(true);
    QCOMPARE(SessionReport(*session).html(), running.html() + "<br><h3>Завершено</h3>");
    QCOMPARE(SessionReport(*session).title(),
             QStringLiteral("<h3>Сессия Проба (2024/03/05 14:20)</h3>"));
}

void SessionTest::transferMark_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("mark");
    QTest::newRow("stop") << "stop"
                          << "<span class=\"err\">Стоп</span>";
    QTest::newRow("-2") << "-2"
                        << "<span class=\"bad2\">-2</span>";
    QTest::newRow("-1") << "-1"
                        << "<span class=\"bad1\">-1</span>";
    QTest::newRow("+2") << "+2"
                        << "<span class=\"good2\">+2</span>";
    QTest::newRow("case matters") << "Stop"
                                  << "<span class=\"\">Stop</span>";
    QTest::newRow("markup stays") << "<b>"
                                  << "<span class=\"\"><b></span>";
}

void SessionTest::transferMark()
{
    QFETCH(QString, action);
    QFETCH(QString, mark);
    QCOMPARE(SessionReport::transferMark(action), mark);
}

void SessionTest::exportTablesMatchTheGoldenFile()
{
    const std::unique_ptr<TarveloSession> report(reportSession());
    report->setFinished(true);
    TarveloSession empty;
    empty.setLoaded(true);
    TarveloSession oneStep;
    oneStep.setFinished(true);
    oneStep.addStage(stage(3, 10, QStringLiteral("-1"), {step(4, 1, true, 700, 2000)}));
    const QString text =
        tableText(QStringLiteral("report session"), SessionReport(*report).exportTable())
        + tableText(QStringLiteral("no stages"), SessionReport(empty).exportTable())
        + tableText(QStringLiteral("one stage of one step"), SessionReport(oneStep).exportTable());
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("export_tables.txt"), text.toUtf8()));
}

void SessionTest::exportedFilesMatchTheGoldenFiles()
{
    QTemporaryDir dir;
    TarveloSession small;
    small.setStart(exampleStart());
    small.setFinished(true);
    small.addStage(stage(3, 10, QStringLiteral("+2"),
                         {step(3, 3, true, 400, 1000), step(9, 1, true, 600, 1000)}));
    const QString csv = dir.filePath(QStringLiteral("small.csv"));
    QVERIFY(SessionExport::writeTable(SessionExport::Format::Csv,
                                      SessionReport(small).exportTable(), csv,
                                      SessionExport::sheetName(small)));
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("small_session.csv"), TestFiles::read(csv)));

    const std::unique_ptr<TarveloSession> report(reportSession());
    report->setFinished(true);
    const QString session = dir.filePath(QStringLiteral("session.xlsx"));
    QVERIFY(SessionExport::writeTable(SessionExport::Format::Xlsx,
                                      SessionReport(*report).exportTable(), session,
                                      SessionExport::sheetName(*report)));
    // The first sheet is the active one; an empty column keeps Excel's width, a text longer
    // than Excel's widest column gets that width.
    const QString sheets = dir.filePath(QStringLiteral("sheets.xlsx"));
    QVERIFY(XLSXHelper::dataToXLSX(
        {{QStringLiteral("Первый"),
          {{QVariant(), QStringLiteral("Ёлка"), 2, 0.5}, {}, {QVariant(), true}}},
         {QStringLiteral("Second"), {{QString(300, 'x'), -1, 1.0 / 3}}}},
        sheets));
    const QJsonObject both {{"session", readXlsxBack(session)}, {"sheets", readXlsxBack(sheets)}};
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("workbooks.json"),
                                     QJsonDocument(both).toJson(QJsonDocument::Indented)));
}

void SessionTest::badSheetNamesAndTargetsAreRefused_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("target");
    QTest::newRow("no sheets") << QStringList() << "x.xlsx";
    QTest::newRow("empty name") << QStringList {QString()} << "x.xlsx";
    QTest::newRow("bracket") << QStringList {"a[1]"} << "x.xlsx";
    QTest::newRow("colon") << QStringList {"14:20"} << "x.xlsx";
    QTest::newRow("too long") << QStringList {QString(32, 'x')} << "x.xlsx";
    QTest::newRow("duplicate") << QStringList {"Sheet", "sheet"} << "x.xlsx";
    QTest::newRow("missing folder") << QStringList {"s"} << "missing/x.xlsx";
    QTest::newRow("a folder") << QStringList {"s"} << ".";
}

void SessionTest::badSheetNamesAndTargetsAreRefused()
{
    QFETCH(QStringList, names);
    QFETCH(QString, target);
    QList<XLSXHelper::Sheet> sheets;
    for (const QString &name : names)
        sheets << XLSXHelper::Sheet {name, {{1}}};
    QTemporaryDir dir;
    const QString path = QDir(dir.path()).absoluteFilePath(target);
    QVERIFY(!XLSXHelper::dataToXLSX(sheets, path));
    QVERIFY(QFileInfo(path).isDir() || !QFile::exists(path));
}

void SessionTest::exportNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("name");
    QTest::newRow("all parts") << "Проба"
                               << "Иванов Иван"
                               << "Иванов Иван - Проба - 2024-03-05 14.20";
    QTest::newRow("no subject") << "Проба"
                                << ""
                                << "Проба - 2024-03-05 14.20";
    QTest::newRow("no title") << ""
                              << "Иванов Иван"
                              << "Иванов Иван - 2024-03-05 14.20";
}

void SessionTest::exportNames()
{
    QFETCH(QString, title);
    QFETCH(QString, subject);
    QFETCH(QString, name);
    TarveloSession session;
    QCOMPARE(SessionExport::sheetName(session), QStringLiteral("Сессия"));
    session.setScriptTitle(title);
    session.setStart(exampleStart());
    QCOMPARE(SessionExport::defaultFileName(session, subject), name);
    QCOMPARE(SessionExport::sheetName(session), QStringLiteral("2024-03-05 14.20"));
    QCOMPARE(SessionExport::pdfHtml(session, QStringLiteral("<table/>"), subject),
             (subject.isEmpty() ? QString() : "<h3>" + subject + "</h3>")
                 + SessionReport(session).title() + "<table/>");
}

QTEST_GUILESS_MAIN(SessionTest)
#include "tst_session.moc"
