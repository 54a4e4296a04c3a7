#include "SessionFixtures.h"
#include "XlsxReadBack.h"
#include "foundation/LanguageContext.h"
#include "foundation/XLSXHelper.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace SessionFixtures;

namespace {
// A finished session of one stage: a correct step and a wrong control, both in time.
TarveloSession *smallSession()
{
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Проба"));
    session->setStart(exampleStart());
    session->setFinished(true);
    session->addStage(stage(3, 10, QStringLiteral("+2"),
                            {step(3, 3, true, 400, 1000), step(9, 1, true, 600, 1000)}));
    return session;
}

// Every non-empty cell of the table, as the reader reports it: [row, column, type, value].
QJsonArray expectedCells(const XLSXHelper::Rows &rows)
{
    QJsonArray cells;
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < rows[r].size(); ++c) {
            const QVariant &cell = rows[r][c];
            if (cell.userType() == QMetaType::QString && cell.toString().isEmpty())
                continue;
            const bool number =
                cell.userType() == QMetaType::Int || cell.userType() == QMetaType::Double;
            cells.append(
                QJsonArray {r + 1, c + 1, number ? "n" : "s",
                            number ? QJsonValue(cell.toDouble()) : QJsonValue(cell.toString())});
        }
    }
    return cells;
}

void compareCells(const QJsonArray &actual, const QJsonArray &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        const QJsonArray a = actual[i].toArray();
        const QJsonArray e = expected[i].toArray();
        const QString where =
            QStringLiteral("row %1 column %2").arg(e[0].toInt()).arg(e[1].toInt());
        QVERIFY2(a[0] == e[0] && a[1] == e[1] && a[2] == e[2], qPrintable(where));
        if (e[2] == QLatin1String("n"))
            // The file keeps about 16 significant digits, as Excel shows at most 15.
            QVERIFY2(qAbs(a[3].toDouble() - e[3].toDouble())
                         <= 1e-14 * qMax(1.0, qAbs(e[3].toDouble())),
                     qPrintable(where));
        else
            QVERIFY2(a[3] == e[3], qPrintable(where + QStringLiteral(": ") + a[3].toString()));
    }
}
} // namespace

class XLSXHelperTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCOMPARE(LanguageContext::setLanguage("ru_RU"), QStringLiteral("ru_RU"));
    }
    void sessionCsvMatchesTheGoldenBytes();
    void csvWritesEverySheetAndCellAsItIs();
    void csvToAnUnwritableTargetFails();
    void sessionWorkbookReadsBackCellByCell();
    void workbookWithSeveralSheetsActivatesTheFirst();
    void columnsAreSizedToTheirLongestText();
    void badSheetNamesAreRefused_data();
    void badSheetNamesAreRefused();
    void workbookToAnUnwritableTargetFails();
    void workbookWithoutSheetsFails();
};

void XLSXHelperTest::sessionCsvMatchesTheGoldenBytes()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(smallSession());
    const SessionReport report(*session);
    const QString path = dir.filePath(QStringLiteral("small.csv"));
    QVERIFY(SessionExport::writeTable(SessionExport::Format::Csv, report.exportTable(), path,
                                      SessionExport::sheetName(*session)));
    const QByteArray expected =
        TestFiles::read(QStringLiteral(TARVELO_TEST_DATA "/small_session.csv"));
    QVERIFY(expected.startsWith("\xEF\xBB\xBF"));
    QCOMPARE(TestFiles::read(path), expected);
}

void XLSXHelperTest::csvWritesEverySheetAndCellAsItIs()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("sheets.csv"));
    const QList<XLSXHelper::Sheet> sheets {
        {QStringLiteral("один"), {{1, 0.1 + 0.2, QStringLiteral("a,b"), true}, {}, {QVariant()}}},
        {QStringLiteral("two"), {{3.0, -2.5e-7}}},
    };
    QVERIFY(XLSXHelper::dataToCSV(sheets, path, QStringLiteral(","), QStringLiteral("\n")));
    // No quoting: the comma inside the text makes a further column.
    QCOMPARE(TestFiles::read(path),
             QByteArray("\xEF\xBB\xBFодин\n1,0.30000000000000004,a,b,true,\n\n,\n\n\n"
                        "two\n3,-2.5e-07,\n\n\n"));

    // An existing file is replaced, not appended to.
    QVERIFY(XLSXHelper::dataToCSV({{1}}, path, QStringLiteral("s"), QStringLiteral(";"),
                                  QStringLiteral("\r\n")));
    QCOMPARE(TestFiles::read(path), QByteArray("\xEF\xBB\xBFs\r\n1;\r\n\r\n\r\n"));
}

void XLSXHelperTest::csvToAnUnwritableTargetFails()
{
    QTemporaryDir dir;
    QVERIFY(!XLSXHelper::dataToCSV({{1}}, dir.filePath(QStringLiteral("missing/x.csv")),
                                   QStringLiteral("s"), QStringLiteral(";"), QStringLiteral("\n")));
    QVERIFY(!XLSXHelper::dataToCSV({{1}}, dir.path(), QStringLiteral("s"), QStringLiteral(";"),
                                   QStringLiteral("\n")));
}

void XLSXHelperTest::sessionWorkbookReadsBackCellByCell()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(reportSession());
    session->setFinished(true);
    const XLSXHelper::Rows table = SessionReport(*session).exportTable();
    const QString path = dir.filePath(QStringLiteral("session.xlsx"));
    QVERIFY(SessionExport::writeTable(SessionExport::Format::Xlsx, table, path,
                                      SessionExport::sheetName(*session)));

    const QJsonObject workbook = readXlsxBack(path);
    QVERIFY(!workbook.isEmpty());
    QCOMPARE(workbook["active"].toString(), QStringLiteral("2024-03-05 14.20"));
    const QJsonArray sheets = workbook["sheets"].toArray();
    QCOMPARE(sheets.size(), 1);
    const QJsonObject sheet = sheets[0].toObject();
    QCOMPARE(sheet["name"].toString(), QStringLiteral("2024-03-05 14.20"));
    const QJsonArray cells = sheet["cells"].toArray();
    compareCells(cells, expectedCells(table));

    // Spot checks against the table's meaning: counts are numbers, the matrix is text, the
    // row after the statistics is empty.
    const auto cellAt = [&cells](int row, int column) {
        for (const QJsonValue &value : cells) {
            const QJsonArray cell = value.toArray();
            if (cell[0].toInt() == row && cell[1].toInt() == column)
                return cell;
        }
        return QJsonArray();
    };
    QCOMPARE(cellAt(2, 1), (QJsonArray {2, 1, "n", 1}));
    QCOMPARE(cellAt(3, 9), (QJsonArray {3, 9, "s", "-"}));
    QCOMPARE(cellAt(6, 3), (QJsonArray {6, 3, "n", 6}));
    QVERIFY(cellAt(6, 1).isEmpty());
    for (int column = 1; column <= 11; ++column)
        QVERIFY(cellAt(10, column).isEmpty());
    QCOMPARE(cellAt(14, 3), (QJsonArray {14, 3, "s", "1"}));
}

void XLSXHelperTest::workbookWithSeveralSheetsActivatesTheFirst()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("multi.xlsx"));
    const XLSXHelper::Rows first {{QStringLiteral("Ёлка"), 2, 0.5}, {}, {true}};
    const XLSXHelper::Rows second {{QVariant(), -1}};
    QVERIFY(XLSXHelper::dataToXLSX(
        {{QStringLiteral("Первый"), first}, {QStringLiteral("Second"), second}}, path));
    const QJsonObject workbook = readXlsxBack(path);
    QVERIFY(!workbook.isEmpty());
    QCOMPARE(workbook["active"].toString(), QStringLiteral("Первый"));
    const QJsonArray sheets = workbook["sheets"].toArray();
    QCOMPARE(sheets.size(), 2);
    QCOMPARE(sheets[0].toObject()["name"].toString(), QStringLiteral("Первый"));
    QVERIFY(sheets[0].toObject()["selected"].toBool());
    QVERIFY(!sheets[1].toObject()["selected"].toBool());
    compareCells(sheets[0].toObject()["cells"].toArray(),
                 QJsonArray {QJsonArray {1, 1, "s", "Ёлка"}, QJsonArray {1, 2, "n", 2},
                             QJsonArray {1, 3, "n", 0.5}, QJsonArray {3, 1, "b", true}});
    compareCells(sheets[1].toObject()["cells"].toArray(), QJsonArray {QJsonArray {1, 2, "n", -1}});
}

void XLSXHelperTest::columnsAreSizedToTheirLongestText()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("widths.xlsx"));
    const QString longText = QStringLiteral("Значение реакции и ещё немного");
    QVERIFY(XLSXHelper::dataToXLSX({{QStringLiteral("a"), longText}, {1, 2}, {1.0 / 3}}, path,
                                   QStringLiteral("w")));
    const QJsonObject workbook = readXlsxBack(path);
    QVERIFY(!workbook.isEmpty());
    const QJsonObject widths = workbook["sheets"].toArray()[0].toObject()["widths"].toObject();
    // Short contents keep at least Excel's standard width; a long text gets room for itself.
    QVERIFY2(widths["1"].toDouble() >= 8 && widths["1"].toDouble() < 14,
             qPrintable(QString::number(widths["1"].toDouble())));
    QVERIFY(widths["2"].toDouble() >= longText.size());
    QVERIFY(widths["2"].toDouble() < longText.size() + 4);
}

void XLSXHelperTest::badSheetNamesAreRefused_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::newRow("empty") << QStringList {QString()};
    QTest::newRow("bracket") << QStringList {"a[1]"};
    QTest::newRow("colon") << QStringList {"14:20"};
    QTest::newRow("slash") << QStringList {"2024/03/05"};
    QTest::newRow("too long") << QStringList {QString(32, QLatin1Char('x'))};
    QTest::newRow("quoted") << QStringList {"'name'"};
    QTest::newRow("duplicate") << QStringList {"Sheet", "sheet"};
}

void XLSXHelperTest::badSheetNamesAreRefused()
{
    QFETCH(QStringList, names);
    QList<XLSXHelper::Sheet> sheets;
    for (const QString &name : names)
        sheets << XLSXHelper::Sheet {name, {{1}}};
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.xlsx"));
    QVERIFY(!XLSXHelper::dataToXLSX(sheets, path));
    QVERIFY(!QFile::exists(path));
}

void XLSXHelperTest::workbookToAnUnwritableTargetFails()
{
    QTemporaryDir dir;
    QVERIFY(!XLSXHelper::dataToXLSX({{1}}, dir.filePath(QStringLiteral("missing/x.xlsx")),
                                    QStringLiteral("s")));
    QVERIFY(!XLSXHelper::dataToXLSX({{1}}, dir.path(), QStringLiteral("s")));
    QVERIFY(!XLSXHelper::dataToXLSX({{1}}, QString(), QStringLiteral("s")));
}

void XLSXHelperTest::workbookWithoutSheetsFails()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.xlsx"));
    QVERIFY(!XLSXHelper::dataToXLSX(QList<XLSXHelper::Sheet> {}, path));
    QVERIFY(!QFile::exists(path));
}

QTEST_GUILESS_MAIN(XLSXHelperTest)
#include "tst_xlsxhelper.moc"
