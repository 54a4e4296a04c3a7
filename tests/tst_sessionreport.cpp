#include "SessionFixtures.h"
#include "data/TarveloCommon.h"
#include "foundation/LanguageContext.h"
#include "session/ReportTexts.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"

#include <QtTest>

#include <memory>

using namespace SessionFixtures;

namespace {
// The golden report is kept in readable lines; the report itself has no line breaks.
QString expectedRunningReport()
{
    QString text = QString::fromUtf8(
        TestFiles::read(QStringLiteral(TARVELO_TEST_DATA "/report_running.html")));
    text.remove(QLatin1Char('\n'));
    return text;
}

QList<int> typesOf(const XLSXHelper::Row &row)
{
    QList<int> types;
    for (const QVariant &cell : row)
        types << cell.userType();
    return types;
}

const int Int = QMetaType::Int;
const int Double = QMetaType::Double;
const int Text = QMetaType::QString;

void compareTypes(const XLSXHelper::Row &row, const QList<int> &expected)
{
    QCOMPARE(typesOf(row), expected);
}

QList<int> repeated(int type, int count)
{
    return QVector<int>(count, type).toList();
}

void verifyNear(const QVariant &cell, double expected)
{
    QCOMPARE(cell.userType(), Double);
    QVERIFY2(qAbs(cell.toDouble() - expected) < 1e-12,
             qPrintable(QString::number(cell.toDouble(), 'g', 17)));
}
} // namespace

class SessionReportTest : public QObject
{
    Q_OBJECT
private slots:
    // The report's texts keep the language of their first use.
    void initTestCase()
    {
        QCOMPARE(LanguageContext::setLanguage("ru_RU"), QStringLiteral("ru_RU"));
    }
    void runningSessionReportMatchesTheGoldenText();
    void finishedSessionEndsWithTheFinishLine();
    void loadedSessionIsExportableWithoutFinishLine();
    void titleLineEscapesTheScriptTitle();
    void rowsAreNumberedWithTwoDigitsAtLeast();
    void transferMark_data();
    void transferMark();
    void exportTableOfTheReportSession();
    void exportTableWithoutStages();
    void oneStepStageExportsDashes();
    void sessionWithoutStagesReportsZeros();
    void buttonNamesFollowTheEnumeration();
    void defaultFileName_data();
    void defaultFileName();
    void sheetNameIsTheStartOrTheSessionWord();
    void pdfTextPutsTheHeadingsInFront();
    void filtersChooseTheFormat();
    void writeTableRefusesPdf();
};

void SessionReportTest::runningSessionReportMatchesTheGoldenText()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    const SessionReport report(*session);
    const QString expected = expectedRunningReport();
    QVERIFY(expected.startsWith(QStringLiteral("<style>")));
    QCOMPARE(report.html(), expected);
    QVERIFY(!report.isExportable());
    QVERIFY(report.exportTable().isEmpty());
}

void SessionReportTest::finishedSessionEndsWithTheFinishLine()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    const SessionReport report(*session);
    QCOMPARE(report.html(), expectedRunningReport() + QStringLiteral("<br><h3>Завершено</h3>"));
    QVERIFY(report.isExportable());
}

void SessionReportTest::loadedSessionIsExportableWithoutFinishLine()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setLoaded(true);
    const SessionReport report(*session);
    QCOMPARE(report.html(), expectedRunningReport());
    QVERIFY(report.isExportable());
    QCOMPARE(report.exportTable().size(), 4 + 18);
}

void SessionReportTest::titleLineEscapesTheScriptTitle()
{
    TarveloSession session;
    session.setScriptTitle(QStringLiteral("A<B & <i>C</i>"));
    session.setStart(exampleStart());
    QCOMPARE(
        SessionReport(session).title(),
        QStringLiteral("<h3>Сессия A&lt;B &amp; &lt;i&gt;C&lt;/i&gt; (2024/03/05 14:20)</h3>"));
    TarveloSession undated;
    QCOMPARE(SessionReport(undated).title(), QStringLiteral("<h3>Сессия  ()</h3>"));
}

void SessionReportTest::rowsAreNumberedWithTwoDigitsAtLeast()
{
    TarveloSession session;
    session.setFinished(true);
    for (int i = 0; i < 100; ++i)
        session.addStage(stage(i % 7, 1, QString(), {}));
    const SessionReport report(session);
    const QString html = report.html();
    const QStringList expected {QStringLiteral("01"), QStringLiteral("09"), QStringLiteral("10"),
                                QStringLiteral("11"), QStringLiteral("12"), QStringLiteral("99"),
                                QStringLiteral("100")};
    for (const QString &number : expected)
        QVERIFY2(
            html.contains(QStringLiteral("<tr><td>") + number + QStringLiteral("</td><td>Этап ")),
            qPrintable(number));
    QVERIFY(!html.contains(QStringLiteral("<tr><td>1</td>")));
    QVERIFY(!html.contains(QStringLiteral("<tr><td>0100</td>")));
    // The export numbers plainly, as ints.
    for (int n = 1; n <= 12; ++n)
        QCOMPARE(report.exportTable().at(n).at(0), QVariant(n));
}

void SessionReportTest::transferMark_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("mark");
    QTest::newRow("stop") << "stop"
                          << "<span class=\"err\">Стоп</span>";
    QTest::newRow("max repeats") << "maxRepeats"
                                 << "<span class=\"err\">Макс.повторов</span>";
    QTest::newRow("repeat") << "repeat"
                            << "<span class=\"bad0\">Повтор</span>";
    QTest::newRow("-2") << "-2"
                        << "<span class=\"bad2\">-2</span>";
    QTest::newRow("-1") << "-1"
                        << "<span class=\"bad1\">-1</span>";
    QTest::newRow("+1") << "+1"
                        << "<span class=\"good1\">+1</span>";
    QTest::newRow("+2") << "+2"
                        << "<span class=\"good2\">+2</span>";
    QTest::newRow("empty") << ""
                           << "<span class=\"\"></span>";
    QTest::newRow("case matters") << "Stop"
                                  << "<span class=\"\">Stop</span>";
    QTest::newRow("unknown word") << "+3"
                                  << "<span class=\"\">+3</span>";
    QTest::newRow("markup is escaped") << "<b>"
                                       << "<span class=\"\">&lt;b&gt;</span>";
}

void SessionReportTest::transferMark()
{
    QFETCH(QString, action);
    QFETCH(QString, mark);
    QCOMPARE(SessionReport::transferMark(action), mark);
}

void SessionReportTest::exportTableOfTheReportSession()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    const XLSXHelper::Rows table = SessionReport(*session).exportTable();
    QCOMPARE(table.size(), 4 + 18);

    QCOMPARE(
        table[0],
        (XLSXHelper::Row {"№", "Этап", "Реакции", "Правильные", "Запоздалые", "Ошибочные",
                          "Пропущенные", "M реакции", "D реакции", "Ступень скор.", "Переход"}));
    compareTypes(table[0], repeated(Text, 11));

    const QList<int> stageTypes {Int,    Text,   Int,    Double, Double, Double,
                                 Double, Double, Double, Text,   Text};
    compareTypes(table[1], stageTypes);
    QCOMPARE(table[1].mid(0, 7), (XLSXHelper::Row {1, "Этап 0", 3, 1.0, 0.0, 1.0, 1.0}));
    verifyNear(table[1][7], 0.8);
    verifyNear(table[1][8], 0.37);
    QCOMPARE(table[1].mid(9), (XLSXHelper::Row {"0 - 1.167", "+1"}));

    // One step: D has no value and is dashed here, unlike in the report.
    QCOMPARE(typesOf(table[2]).mid(0, 8), stageTypes.mid(0, 8));
    QCOMPARE(
        table[2],
        (XLSXHelper::Row {2, "Этап 1", 1, 0.0, 1.0, 0.0, 0.0, 0.6, "-", "1 - 0.500", "repeat"}));
    QCOMPARE(table[2][8].userType(), Text);

    compareTypes(table[3], stageTypes);
    QCOMPARE(table[3],
             (XLSXHelper::Row {3, "Этап 1", 0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, "1 - 0.000",
                               "maxRepeats"}));

    compareTypes(table[4], stageTypes);
    QCOMPARE(table[4].mid(0, 7), (XLSXHelper::Row {4, "Этап 2", 2, 1.0, 0.0, 1.0, 0.0}));
    verifyNear(table[4][7], 0.55);
    verifyNear(table[4][8], 0.125);
    // No transfer yet: an empty text, not an invalid cell.
    QCOMPARE(table[4].mid(9), (XLSXHelper::Row {"2 - 0.800", QString()}));
    QVERIFY(table[4][10].isValid());

    QCOMPARE(table[5], (XLSXHelper::Row {QString(), QString(), 6, 2, 1, 2, 1}));
    compareTypes(table[5], {Text, Text, Int, Int, Int, Int, Int});

    const QStringList labels {"M", "D", "CKO"};
    const double figures[3][6] = {{1.5, 0.5, 0.25, 0.5, 0.25, 0.4875},
                                  {5.0 / 3, 1.0 / 3, 0.25, 1.0 / 3, 0.25, 0.351875 / 3},
                                  {std::sqrt(5.0 / 3), std::sqrt(1.0 / 3), 0.5, std::sqrt(1.0 / 3),
                                   0.5, std::sqrt(0.351875 / 3)}};
    for (int k = 0; k < 3; ++k) {
        const XLSXHelper::Row &row = table[6 + k];
        compareTypes(row, {Text, Text, Double, Double, Double, Double, Double, Double});
        QCOMPARE(row[0], QVariant(QString()));
        QCOMPARE(row[1], QVariant(labels[k]));
        for (int c = 0; c < 6; ++c)
            verifyNear(row[2 + c], figures[k][c]);
    }

    QVERIFY(table[9].isEmpty());
    QCOMPARE(table[10], (XLSXHelper::Row {"Требуемая реакция"}));
    QCOMPARE(table[11],
             (XLSXHelper::Row {QString(), "зел.", "жёлт.", "бел.", "кр.", "син.", "н.звук",
                               "в.звук", "л.нога", "п.нога"}));
    QCOMPARE(table[12],
             (XLSXHelper::Row {"Значение реакции", "1", "-", "-", "1", "1", "1", "-", "1", "1"}));
    const QStringList names = ReportTexts::instance().buttonNames;
    for (int i = 0; i < 9; ++i) {
        const XLSXHelper::Row &row = table[13 + i];
        compareTypes(row, repeated(Text, 10));
        QCOMPARE(row[0], QVariant(names[i]));
        for (int j = 0; j < 9; ++j) {
            const bool counted = (i == 0 && j == 1) || (i == j && (i == 3 || i == 4 || i == 7))
                || (i == 8 && j == 7);
            QCOMPARE(row[1 + j], QVariant(counted ? QStringLiteral("1") : QStringLiteral("-")));
        }
    }
}

void SessionReportTest::exportTableWithoutStages()
{
    TarveloSession session;
    session.setLoaded(true);
    const XLSXHelper::Rows table = SessionReport(session).exportTable();
    QCOMPARE(table.size(), 18);
    QCOMPARE(table[0].size(), 11);
    QCOMPARE(table[1], (XLSXHelper::Row {QString(), QString(), 0, 0, 0, 0, 0}));
    for (int k = 0; k < 3; ++k) {
        compareTypes(table[2 + k], {Text, Text, Double, Double, Double, Double, Double, Double});
        for (int c = 2; c < 8; ++c)
            QCOMPARE(table[2 + k][c], QVariant(0.0));
    }
    QVERIFY(table[5].isEmpty());
    for (int row = 8; row < 18; ++row) {
        QCOMPARE(table[row].size(), 10);
        for (int c = 1; c < 10; ++c)
            QCOMPARE(table[row][c], QVariant(QStringLiteral("-")));
    }
}

void SessionReportTest::oneStepStageExportsDashes()
{
    TarveloSession session;
    session.setFinished(true);
    session.addStage(stage(3, 10, QStringLiteral("-1"), {step(4, 1, true, 700, 2000)}));
    const SessionReport report(session);
    const XLSXHelper::Rows table = report.exportTable();
    QCOMPARE(table[1][7], QVariant(0.7));
    QCOMPARE(table[1][8], QVariant(QStringLiteral("-")));
    // Rows: header, stage, sums, then M, D, CKO; with one stage D and CKO are all dashes.
    QCOMPARE(table[3][1], QVariant(QStringLiteral("M")));
    for (int k = 1; k < 3; ++k) {
        for (int c = 2; c < 8; ++c)
            QCOMPARE(table[3 + k][c], QVariant(QStringLiteral("-")));
    }
    // The report shows Qt's own text for the stage's D but dashes the session figures.
    QVERIFY(report.html().contains(
        QStringLiteral("<td class=\"r\">0.700</td><td class=\"r\">nan</td>")));
    QVERIFY(report.html().contains(
        QStringLiteral("<tr><td colspan=2 class=\"r lg\">D</td><td class=\"r lg\">-</td>")));
    QVERIFY(report.html().contains(QStringLiteral("<td class=\"r lg\">1</td>"))); // Σ of steps
}

void SessionReportTest::sessionWithoutStagesReportsZeros()
{
    TarveloSession session;
    const QString html = SessionReport(session).html();
    QVERIFY(html.contains(QStringLiteral("<tr><td colspan=2 class=\"r lg\">Σ</td>")
                          + QStringLiteral("<td class=\"r lg\">0</td>").repeated(5)));
    for (const QString label : {"M", "D", "CKO"})
        QVERIFY(html.contains(QStringLiteral("<tr><td colspan=2 class=\"r lg\">") + label
                              + QStringLiteral("</td>")
                              + QStringLiteral("<td class=\"r lg\">0.00</td>").repeated(6)));
}

void SessionReportTest::buttonNamesFollowTheEnumeration()
{
    QCOMPARE(ReportTexts::instance().buttonNames,
             QStringList(
                 {"зел.", "жёлт.", "бел.", "кр.", "син.", "н.звук", "в.звук", "л.нога", "п.нога"}));
}

void SessionReportTest::defaultFileName_data()
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
    QTest::newRow("date only") << ""
                               << ""
                               << "2024-03-05 14.20";
}

void SessionReportTest::defaultFileName()
{
    QFETCH(QString, title);
    QFETCH(QString, subject);
    QFETCH(QString, name);
    TarveloSession session;
    session.setScriptTitle(title);
    session.setStart(exampleStart());
    QCOMPARE(SessionExport::defaultFileName(session, subject), name);
}

void SessionReportTest::sheetNameIsTheStartOrTheSessionWord()
{
    TarveloSession session;
    QCOMPARE(SessionExport::sheetName(session), QStringLiteral("Сессия"));
    session.setStart(exampleStart());
    QCOMPARE(SessionExport::sheetName(session), QStringLiteral("2024-03-05 14.20"));
}

void SessionReportTest::pdfTextPutsTheHeadingsInFront()
{
    TarveloSession session;
    session.setScriptTitle(QStringLiteral("Проба <1>"));
    session.setStart(exampleStart());
    const QString report = QStringLiteral("<style></style><table></table>");
    QCOMPARE(SessionExport::pdfHtml(session, report, QString()),
             QStringLiteral("<h3>Сессия Проба &lt;1&gt; (2024/03/05 14:20)</h3>") + report);
    QCOMPARE(SessionExport::pdfHtml(session, report, QStringLiteral("Иванов И.")),
             QStringLiteral("<h3>Иванов И.</h3><h3>Сессия Проба &lt;1&gt; (2024/03/05 14:20)</h3>")
                 + report);
}

void SessionReportTest::filtersChooseTheFormat()
{
    using SessionExport::Format;
    const QStringList filters = SessionExport::filters();
    QCOMPARE(filters, (QStringList {"XLSX (*.xlsx)", "CSV (*.csv)", "PDF (*.pdf)"}));
    QCOMPARE(SessionExport::formatForFilter(filters[0]), Format::Xlsx);
    QCOMPARE(SessionExport::formatForFilter(filters[1]), Format::Csv);
    QCOMPARE(SessionExport::formatForFilter(filters[2]), Format::Pdf);
    QCOMPARE(SessionExport::formatForFilter(QString()), Format::Xlsx);
    QCOMPARE(SessionExport::chosenFilter(filters[2]), filters[2]);
    QCOMPARE(SessionExport::chosenFilter(QStringLiteral("csv (*.csv)")), filters[0]);
    QCOMPARE(SessionExport::chosenFilter(QString()), filters[0]);
}

void SessionReportTest::writeTableRefusesPdf()
{
    QVERIFY(!SessionExport::writeTable(SessionExport::Format::Pdf, {{1}}, QStringLiteral("x.pdf"),
                                       QStringLiteral("s")));
    QVERIFY(!QFile::exists(QStringLiteral("x.pdf")));
}

QTEST_GUILESS_MAIN(SessionReportTest)
#include "tst_sessionreport.moc"
