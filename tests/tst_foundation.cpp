#include "foundation/AppHelper.h"
#include "foundation/DeferredStart.h"
#include "foundation/FileUtilities.h"
#include "foundation/Statistics.h"
#include "foundation/TextHelper.h"
#include "support/TestFiles.h"

#include <QtTest>

namespace {
void touch(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    TestFiles::write(path, "x");
}

// A few passes of the event loop, which queued work needs; no waiting.
void passEvents()
{
    for (int pass = 0; pass < 5; ++pass)
        QCoreApplication::processEvents();
}

QString meanVarianceSigma(const QString &input)
{
    QList<double> values;
    for (const QString &value : input.split(' ', Qt::SkipEmptyParts))
        values << value.toDouble();
    double m = -1;
    double d = -1;
    double sigma = -1;
    m_d_cko(values, &m, &d, &sigma);
    return QString::asprintf("%.15g %.15g %.15g", m, d, sigma);
}

} // namespace

class FoundationTest : public QObject
{
    Q_OBJECT
private slots:
    void textFunctions_data() { TestFiles::addRows(QStringLiteral("tables/foundation.txt")); }
    void textFunctions();
    void filesOfTypeGoDownWithRelativeNames();
    void writeAtomicallyReplacesOrLeavesTheOldFile();
    void folderNameIsSafe_data();
    void folderNameIsSafe();
    void heldWorkWaitsForTheFirstPaint();
};

void FoundationTest::textFunctions()
{
    QFETCH(QString, function);
    QFETCH(QString, input);
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    QString actual;
    if (function == QLatin1String("FolderSlash")) {
        actual = FileUtilities::FolderSlash(input);
    } else if (function == QLatin1String("filename")) {
        actual = FileUtilities::filename(input, !argument.isEmpty());
    } else if (function == QLatin1String("appVersion")) {
        QCoreApplication::setApplicationVersion(input);
        actual = AppHelper::appVersion(true) + ' ' + AppHelper::appVersion(false);
    } else if (function == QLatin1String("trim")) {
        actual = TextHelper::trim(input, argument);
    } else if (function == QLatin1String("multisplit")) {
        actual = TextHelper::multisplit(input, argument.split(QString(), Qt::SkipEmptyParts),
                                        Qt::SkipEmptyParts)
                     .join(' ');
    } else if (function == QLatin1String("m_d_cko")) {
        actual = meanVarianceSigma(input);
    } else if (function == QLatin1String("roundHalfUp")) {
        actual = QString::number(roundHalfUp(input.toDouble()));
    } else {
        const QDateTime time = QDateTime::fromString(input, Qt::ISODateWithMs);
        actual = TextHelper::DateTimeFileString(time, !argument.isEmpty());
    }
    QCOMPARE(actual, expected);
}

void FoundationTest::filesOfTypeGoDownWithRelativeNames()
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("top.script")));
    touch(dir.filePath(QStringLiteral("sub/inner.script")));
    touch(dir.filePath(QStringLiteral("sub/deeper/deep.script")));
    touch(dir.filePath(QStringLiteral("sub/other.txt")));
    QDir().mkpath(dir.filePath(QStringLiteral(".hidden")));
    // "script", ".script" and "*.script" are the same filter.
    QCOMPARE(FileUtilities::getFilesOfType(dir.path(), QStringLiteral("*.script"), true, false),
             (QStringList {"top.script", "sub/inner.script", "sub/deeper/deep.script"}));
    QCOMPARE(
        FileUtilities::getFilesOfType(dir.path(), QStringLiteral(".script"), true, true).last(),
        QDir(dir.path()).absolutePath() + QStringLiteral("/sub/deeper/deep.script"));
    // Sub-folders leave out dot folders and end in a slash.
    const QString root = FileUtilities::FolderSlash(dir.path());
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), false, false), QStringList {"sub/"});
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), true, true),
             (QStringList {root + "sub/", root + "sub/deeper/"}));
}

void FoundationTest::writeAtomicallyReplacesOrLeavesTheOldFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("User.xml"));
    QVERIFY(FileUtilities::writeAtomically(path, "first"));
    QVERIFY(FileUtilities::writeAtomically(path, "old content"));
    // A disk that fills up half-way, a folder standing where the file goes, no name at all.
    {
        const TestFiles::FileSizeLimit fullDisk(100);
        QVERIFY(!FileUtilities::writeAtomically(path, QByteArray(5000, 'x')));
    }
    touch(dir.filePath(QStringLiteral("taken/keep.txt")));
    QVERIFY(!FileUtilities::writeAtomically(dir.filePath(QStringLiteral("taken")), "data"));
    QVERIFY(!FileUtilities::writeAtomically(QString(), "data"));
    QCOMPARE(TestFiles::read(path), QByteArray("old content"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"User.xml"});
}

void FoundationTest::folderNameIsSafe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("keptEnd");
    QTest::addColumn<QString>("folder");
    const QString guidEnd = QStringLiteral(" (4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10)");
    const QString zhe(1, QChar(0x0416));                    // two bytes in UTF-8
    const QString euro(1, QChar(0x20AC));                   // three bytes
    const QString smile = QString::fromUcs4(U"\U0001F600"); // four bytes, two UTF-16 units
    QTest::newRow("plain") << "Иванов Иван" << guidEnd << "Иванов Иван" + guidEnd;
    QTest::newRow("separators") << "../a/b\\c" << QString() << "_._a_b_c";
    QTest::newRow("parent") << ".." << QString() << "__";
    QTest::newRow("hidden") << ".hidden" << guidEnd << "_hidden" + guidEnd;
    QTest::newRow("refused by Windows") << "c:\"<>|?*d" << QString() << "c_______d";
    QTest::newRow("controls") << QString::fromUtf8("a\x01\tb\x7f") + QChar(0x85) << QString()
                              << "a__b__";
    QTest::newRow("trailing dot") << "Jr." << QString() << "Jr_";
    QTest::newRow("trailing blank") << "Jr " << QString() << "Jr_";
    QTest::newRow("inner dots stay") << "a..b" << QString() << "a..b";
    QTest::newRow("nothing") << QString() << QString() << "_";
    QTest::newRow("long name, GUID kept")
        << zhe.repeated(300) << guidEnd << zhe.repeated((255 - 39) / 2) + guidEnd;
    QTest::newRow("cut at whole characters")
        << euro.repeated(100) << "x" << euro.repeated(84) + "x";
    QTest::newRow("pairs stay whole") << smile.repeated(70) << QString() << smile.repeated(63);
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) + "a" << QString() << "_a";
    QTest::newRow("hostile end") << "a"
                                 << "(../x)"
                                 << "a(.._x)";
}

void FoundationTest::folderNameIsSafe()
{
    QFETCH(QString, name);
    QFETCH(QString, keptEnd);
    const QString made = FileUtilities::safeFolderName(name, keptEnd);
    QTEST(made, "folder");
    QVERIFY(made.toUtf8().size() <= 255);
}

// The port search and the version query wait for the window's first paint; work whose owner
// went meanwhile is dropped, and nothing waits once the start has let go.
void FoundationTest::heldWorkWaitsForTheFirstPaint()
{
    QObject window;
    auto *gone = new QObject;
    QStringList done;
    DeferredStart::hold();
    DeferredStart::call(&window, [&done] { done << QStringLiteral("search"); });
    DeferredStart::call(gone, [&done] { done << QStringLiteral("gone"); });
    DeferredStart::releaseAfterFirstPaint(&window);
    delete gone;
    passEvents();
    QVERIFY(done.isEmpty());
    QEvent paint(QEvent::Paint);
    QCoreApplication::sendEvent(&window, &paint);
    passEvents();
    QCOMPARE(done, QStringList {"search"});
    DeferredStart::call(&window, [&done] { done << QStringLiteral("later"); });
    passEvents();
    QCOMPARE(done, (QStringList {"search", "later"}));
}

QTEST_GUILESS_MAIN(FoundationTest)
#include "tst_foundation.moc"
