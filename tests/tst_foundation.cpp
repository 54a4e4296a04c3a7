#include "foundation/AppHelper.h"
#include "foundation/ConnectionHelper.h"
#include "foundation/FileUtilities.h"
#include "foundation/NLogger.h"
#include "foundation/Statistics.h"
#include "foundation/TextHelper.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {
void touch(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    TestFiles::write(path, "x");
}

bool same(double actual, double expected)
{
    if (std::isnan(expected))
        return std::isnan(actual);
    return qAbs(actual - expected) <= 1e-12 * qMax(1.0, qAbs(expected));
}
} // namespace

class FoundationTest : public QObject
{
    Q_OBJECT
private slots:
    void folderSlash_data();
    void folderSlash();
    void fileName_data();
    void fileName();
    void filesOfTypeGoDownWithRelativeNames();
    void subfoldersSkipDotFoldersAndEndInSlash();
    void writeAtomicallyReplacesOrLeavesTheOldFile();
    void appVersion_data();
    void appVersion();
    void trimTakesOneCharacterPerRound_data();
    void trimTakesOneCharacterPerRound();
    void textHelpers();
    void connectionHelperDisconnectsOnClearAndDestruction();
    void meanAndSampleVariance_data();
    void meanAndSampleVariance();
    void roundHalfUp_data();
    void roundHalfUp();
};

void FoundationTest::folderSlash_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("backslashes") << "C:\\Data\\Tarvelo"
                                 << "C:/Data/Tarvelo/";
    QTest::newRow("already slashed") << "/tmp/a/"
                                     << "/tmp/a/";
    QTest::newRow("empty") << ""
                           << "";
}

void FoundationTest::folderSlash()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    QCOMPARE(FileUtilities::FolderSlash(path), expected);
}

void FoundationTest::fileName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("withSuffix");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two points") << "/a/b/report.v2.script" << false << "report.v2";
    QTest::newRow("with suffix") << "/a/b/report.v2.script" << true << "report.v2.script";
    QTest::newRow("no point") << "/a/README" << false << "README";
    QTest::newRow("only a leading point") << "/a/.script" << false << "";
}

void FoundationTest::fileName()
{
    QFETCH(QString, path);
    QFETCH(bool, withSuffix);
    QFETCH(QString, expected);
    QCOMPARE(FileUtilities::filename(path, withSuffix), expected);
}

void FoundationTest::filesOfTypeGoDownWithRelativeNames()
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("top.script")));
    touch(dir.filePath(QStringLiteral("sub/inner.script")));
    touch(dir.filePath(QStringLiteral("sub/deeper/deep.script")));
    touch(dir.filePath(QStringLiteral("sub/other.txt")));
    // "script", ".script" and "*.script" are the same filter.
    QCOMPARE(FileUtilities::getFilesOfType(dir.path(), QStringLiteral("*.script"), true, false),
             (QStringList {"top.script", "sub/inner.script", "sub/deeper/deep.script"}));
    QCOMPARE(
        FileUtilities::getFilesOfType(dir.path(), QStringLiteral(".script"), true, true).last(),
        QDir(dir.path()).absolutePath() + QStringLiteral("/sub/deeper/deep.script"));
    QCOMPARE(FileUtilities::getFilesOfTypes(dir.path() + QStringLiteral("/sub"),
                                            {QStringLiteral("script"), QStringLiteral("txt")},
                                            false, false)
                 .size(),
             2);
}

void FoundationTest::subfoldersSkipDotFoldersAndEndInSlash()
{
    QTemporaryDir dir;
    QDir().mkpath(dir.filePath(QStringLiteral("b/inner")));
    QDir().mkpath(dir.filePath(QStringLiteral("a")));
    QDir().mkpath(dir.filePath(QStringLiteral(".hidden")));
    touch(dir.filePath(QStringLiteral("file.txt")));
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), false, false), (QStringList {"a/", "b/"}));
    const QString root = FileUtilities::FolderSlash(dir.path());
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), true, true),
             (QStringList {root + "a/", root + "b/", root + "b/inner/"}));
}

void FoundationTest::writeAtomicallyReplacesOrLeavesTheOldFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("User.xml"));
    QVERIFY(FileUtilities::writeAtomically(path, "first"));
    QVERIFY(FileUtilities::writeAtomically(path, "old content"));
    QCOMPARE(TestFiles::read(path), QByteArray("old content"));

    // A disk that fills up half-way, a folder standing where the file goes, no name at all.
    {
        const FileSizeLimit fullDisk(100);
        QVERIFY(!FileUtilities::writeAtomically(path, QByteArray(5000, 'x')));
    }
    touch(dir.filePath(QStringLiteral("taken/keep.txt")));
    QVERIFY(!FileUtilities::writeAtomically(dir.filePath(QStringLiteral("taken")), "data"));
    QVERIFY(!FileUtilities::writeAtomically(QString(), "data"));
    QCOMPARE(TestFiles::read(path), QByteArray("old content"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"User.xml"});
}

void FoundationTest::appVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("three");
    QTest::addColumn<QString>("two");
    QTest::newRow("four parts") << "1.0.6.0"
                                << "1.0.6"
                                << "1.0";
    QTest::newRow("unset uses the constant") << ""
                                             << "1.0.6"
                                             << "1.0";
    QTest::newRow("three parts") << "2.4.1"
                                 << "2.4.1"
                                 << "2.4";
    QTest::newRow("five parts untouched") << "1.2.3.4.5"
                                          << "1.2.3.4.5"
                                          << "1.2.3.4.5";
}

void FoundationTest::appVersion()
{
    QFETCH(QString, version);
    QFETCH(QString, three);
    QFETCH(QString, two);
    QCoreApplication::setApplicationVersion(version);
    QCOMPARE(AppHelper::appVersion(true), three);
    QCOMPARE(AppHelper::appVersion(false), two);
}

void FoundationTest::trimTakesOneCharacterPerRound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("expected");
    QTest::newRow("quotes") << "\"quoted\""
                            << "\""
                            << "quoted";
    QTest::newRow("runs of quotes") << "\"\"x\"\"\""
                                    << "\""
                                    << "x";
    QTest::newRow("a longer part goes a character at a time") << "ababXab"
                                                              << "ab"
                                                              << "babXa";
    QTest::newRow("case counts") << "Xx"
                                 << "x"
                                 << "X";
    QTest::newRow("empty part") << "\"a\""
                                << ""
                                << "\"a\"";
}

void FoundationTest::trimTakesOneCharacterPerRound()
{
    QFETCH(QString, text);
    QFETCH(QString, part);
    QFETCH(QString, expected);
    QCOMPARE(TextHelper::trim(text, part), expected);
}

void FoundationTest::textHelpers()
{
    QCOMPARE(TextHelper::multisplit(QStringLiteral("a,b;c,,d"),
                                    {QStringLiteral(","), QStringLiteral(";")}, Qt::SkipEmptyParts),
             (QStringList {"a", "b", "c", "d"}));
    const QDateTime when(QDate(2024, 3, 5), QTime(14, 20, 31, 45));
    QCOMPARE(TextHelper::DateTimeFileString(when, false), QStringLiteral("2024.03.05-14.20.31"));
    QCOMPARE(TextHelper::DateTimeFileString(when, true), QStringLiteral("2024.03.05-14.20.31.045"));
    // An invalid time stands for now.
    QVERIFY(TextHelper::DateTimeFileString(QDateTime(), false)
                .startsWith(QDate::currentDate().toString(QStringLiteral("yyyy.MM."))));

    QTemporaryDir dir;
    const QString log = dir.filePath(QStringLiteral("first.log"));
    NLogger::LogToFile(QStringLiteral("TYPE"), QStringLiteral("text"), log, false);
    QVERIFY(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3}\tTYPE\ttext\r\n$"))
                .match(QString::fromUtf8(TestFiles::read(log)))
                .hasMatch());
}

void FoundationTest::connectionHelperDisconnectsOnClearAndDestruction()
{
    QObject source;
    int calls = 0;
    {
        ConnectionHelper helper;
        helper << QObject::connect(&source, &QObject::objectNameChanged, [&calls] { ++calls; });
        source.setObjectName(QStringLiteral("a"));
        helper.clear();
        source.setObjectName(QStringLiteral("b"));
        helper << QObject::connect(&source, &QObject::objectNameChanged, [&calls] { ++calls; });
        source.setObjectName(QStringLiteral("c"));
    }
    source.setObjectName(QStringLiteral("d"));
    QCOMPARE(calls, 2);
}

void FoundationTest::meanAndSampleVariance_data()
{
    QTest::addColumn<QList<double>>("values");
    QTest::addColumn<double>("m");
    QTest::addColumn<double>("d");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("none") << QList<double> {} << 0.0 << 0.0;
    QTest::newRow("one has no spread") << QList<double> {2.5} << 2.5 << nan;
    QTest::newRow("sample variance") << QList<double> {1, 2, 3, 4} << 2.5 << 5.0 / 3;
    QTest::newRow("constant") << QList<double> {7, 7, 7} << 7.0 << 0.0;
    // Deviations are taken from the mean, not squares from squares.
    QTest::newRow("far from zero") << QList<double> {1e9 + 1, 1e9 + 2, 1e9 + 3} << 1e9 + 2 << 1.0;
    QTest::newRow("a NaN spreads") << QList<double> {1, nan} << nan << nan;
}

void FoundationTest::meanAndSampleVariance()
{
    QFETCH(QList<double>, values);
    QFETCH(double, m);
    QFETCH(double, d);
    double outM = -1;
    double outD = -1;
    double outCko = -1;
    m_d_cko(values, &outM, &outD, &outCko);
    QVERIFY2(same(outM, m), qPrintable(QString::number(outM)));
    QVERIFY2(same(outD, d), qPrintable(QString::number(outD)));
    QVERIFY(same(outCko, std::sqrt(d)));
    QCOMPARE(sum(values), values.isEmpty() ? 0.0 : m * values.size());
}

void FoundationTest::roundHalfUp_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("rounded");
    QTest::newRow("just under a half") << 2.4999 << 2;
    QTest::newRow("half goes up") << 2.5 << 3;
    QTest::newRow("negative half goes up") << -2.5 << -2;
    QTest::newRow("negative above a half") << -2.6 << -3;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0;
    QTest::newRow("beyond int") << 1e12 << std::numeric_limits<int>::max();
    QTest::newRow("below int") << -1e12 << std::numeric_limits<int>::min();
}

void FoundationTest::roundHalfUp()
{
    QFETCH(double, value);
    QFETCH(int, rounded);
    QCOMPARE(::roundHalfUp(value), rounded);
}

QTEST_GUILESS_MAIN(FoundationTest)
#include "tst_foundation.moc"
