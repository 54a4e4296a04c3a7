#include "foundation/LanguageContext.h"
#include "foundation/Statistics.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"
#include "support/ReadBack.h"
#include "support/SessionFixtures.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace SessionFixtures;

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
    // The report's texts keep the language of their first use.
    void initTestCase()
    {
        QCOMPARE(LanguageContext::setLanguage("ru_RU"), QStringLiteral("ru_RU"));
    }
    void exampleIsWrittenByteForByteAndReadsBack();
    void damagedFilesRead_data() { TestFiles::addRows(QStringLiteral("tables/session_files.txt")); }
    void damagedFilesRead();
    void reportMatchesTheGoldenText();
    void exportTablesMatchTheGoldenFile();
    void exportedFilesMatchTheGoldenFiles();
    void badSheetNamesAndTargetsAreRefused_data()
    {
        TestFiles::addRows(QStringLiteral("tables/bad_workbooks.txt"));
    }
    void badSheetNamesAndTargetsAreRefused();
    void texts_data() { TestFiles::addRows(QStringLiteral("tables/session_texts.txt")); }
    void texts();
    void runningValuesMatchAFullRecomputation_data()
    {
        TestFiles::addRows(QStringLiteral("tables/running_values.txt"));
    }
    void runningValuesMatchAFullRecomputation();
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

void SessionTest::exportTablesMatchTheGoldenFile()
{
    const std::unique_ptr<TarveloSession> report(reportSession());
    report->setFinished(true);
    TarveloSession empty;
    empty.setLoaded(true);
    TarveloSession oneStep;
    oneStep.setFinished(true);
    oneStep.addStage(stage(3, 10, QStringLiteral("-1"), {step(4, 1, true, 700, 2000)}));
    // Stimulus 40 requires nothing (9): used was nothing, then control 10, which is not counted.
    TarveloSession hidden;
    hidden.setFinished(true);
    hidden.addStage(stage(
        0, 3, QString(),
        {step(40, 9, true, 100, 500), step(40, 10, true, 200, 500), step(1, -1, true, 300, 500)}));
    const QString text =
        tableText(QStringLiteral("report session"), SessionReport(*report).exportTable())
        + tableText(QStringLiteral("no stages"), SessionReport(empty).exportTable())
        + tableText(QStringLiteral("one stage of one step"), SessionReport(oneStep).exportTable())
        + tableText(QStringLiteral("controls out of the matrix"),
                    SessionReport(hidden).exportTable());
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("export_tables.txt"), text.toUtf8()));
}

void SessionTest::exportedFilesMatchTheGoldenFiles()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> report(reportSession());
    report->setFinished(true);
    for (const auto format : {SessionExport::Format::Csv, SessionExport::Format::Xlsx})
        QVERIFY(SessionExport::writeTable(format, SessionReport(*report).exportTable(),
                                          dir.filePath(QString::number(int(format))),
                                          SessionExport::sheetName(*report)));
    QVERIFY(TestFiles::matchesGolden(
        QStringLiteral("report_session.csv"),
        TestFiles::read(dir.filePath(QString::number(int(SessionExport::Format::Csv))))));
    // The first sheet is the active one; an empty column keeps Excel's width, a text longer
    // than Excel's widest column gets that width.
    const QString sheets = dir.filePath(QStringLiteral("sheets.xlsx"));
    QVERIFY(XLSXHelper::dataToXLSX(
        {{QStringLiteral("Первый"),
          {{QVariant(), QStringLiteral("Ёлка"), 2, 0.5}, {}, {QVariant(), true}}},
         {QStringLiteral("Second"), {{QString(300, 'x'), -1, 1.0 / 3}}}},
        sheets));
    const QJsonObject both {
        {"session", readXlsxBack(dir.filePath(QString::number(int(SessionExport::Format::Xlsx))))},
        {"sheets", readXlsxBack(sheets)}};
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("workbooks.json"),
                                     QJsonDocument(both).toJson(QJsonDocument::Indented)));
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

void SessionTest::texts()
{
    QFETCH(QString, function);
    QFETCH(QString, input);
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    TarveloSession session;
    session.setScriptTitle(input);
    session.setStart(exampleStart());
    QString actual;
    if (function == QLatin1String("transferMark"))
        actual = SessionReport::transferMark(input);
    else if (function == QLatin1String("defaultFileName"))
        actual = SessionExport::defaultFileName(session, argument);
    else
        actual = SessionExport::pdfHtml(session, QStringLiteral("<table/>"), argument);
    QCOMPARE(actual, expected);
    // The sheet is named by the start, or by the session word when it has none.
    QCOMPARE(SessionExport::sheetName(session), QStringLiteral("2024-03-05 14.20"));
    QCOMPARE(SessionExport::sheetName(TarveloSession()), QStringLiteral("Сессия"));
}

// After every step the stage's figures are those of a pass over all its steps: counts and the
// means to the last bit, D and sigma as close as two ways of adding allow.
void SessionTest::runningValuesMatchAFullRecomputation()
{
    QFETCH(int, seed);
    QFETCH(int, maxReaction);
    QRandomGenerator random {quint32(seed)};
    SessionStage stage;
    QList<double> reactions;
    double allowed = 0;
    int counts[4] = {};
    for (int i = 0; i < 300; ++i) {
        auto *s = step(int(random.bounded(18)), int(random.bounded(11)), random.bounded(8) != 0,
                       int(random.bounded(maxReaction)), int(random.bounded(1, 3000)));
        ++counts[s->outcome()];
        reactions << s->r / 1000.0;
        allowed += s->t / 1000.0;
        stage.addStep(s);

        double m, d, cko;
        m_d_cko(reactions, &m, &d, &cko);
        QCOMPARE((QList<int> {stage.correctCount(), stage.lateCount(), stage.errorCount(),
                              stage.missedCount()}),
                 (QList<int> {counts[SessionStep::Correct], counts[SessionStep::Late],
                              counts[SessionStep::Error], counts[SessionStep::Missed]}));
        QVERIFY(stage.speedStep() == allowed / reactions.size());
        QVERIFY(stage.reactionMean() == m);
        if (i == 0) {
            QVERIFY(std::isnan(stage.reactionVariance()) && std::isnan(stage.reactionSigma()));
            continue;
        }
        // Relative to the squares' scale: the spread may be tiny beside large reactions.
        const double scale = m * m + d;
        QVERIFY(qAbs(stage.reactionVariance() - d) <= 1e-13 * scale);
        QVERIFY(qAbs(stage.reactionSigma() - cko) <= 1e-6 * std::sqrt(scale));
    }
}

QTEST_GUILESS_MAIN(SessionTest)
#include "tst_session.moc"
