#include "foundation/FileUtilities.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

namespace {
void touch(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    TestFiles::write(path, "x");
}
} // namespace

class FileUtilitiesTest : public QObject
{
    Q_OBJECT
private slots:
    void folderSlash_data();
    void folderSlash();
    void filename_data();
    void filename();
    void createIfNotExistsMakesTheWholeChain();
    void clearFolderOnAMissingFolderDoesNothing();
    void clearFolderRemovesAndOptionallyRecreates();
    void filesOfTypeAcceptAnySpellingOfTheSuffix();
    void filesOfTypeWithEmptyTypeListsEverything();
    void filesOfTypeRecursesWithRelativeNames();
    void subfoldersSkipDotFoldersAndEndInSlash();
    void writeAtomicallyReplacesOrLeavesTheOldFile();
    void writeFailingHalfWayLeavesTheOldFile();
};

void FileUtilitiesTest::folderSlash_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("backslashes") << "C:\\Data\\Tarvelo"
                                 << "C:/Data/Tarvelo/";
    QTest::newRow("already slashed") << "/tmp/a/"
                                     << "/tmp/a/";
    QTest::newRow("trailing backslash") << "a\\"
                                        << "a/";
    QTest::newRow("empty") << ""
                           << "";
}

void FileUtilitiesTest::folderSlash()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    QCOMPARE(FileUtilities::FolderSlash(path), expected);
}

void FileUtilitiesTest::filename_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("withSuffix");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two points") << "/a/b/report.v2.script" << false << "report.v2";
    QTest::newRow("with suffix") << "/a/b/report.v2.script" << true << "report.v2.script";
    QTest::newRow("no point") << "/a/README" << false << "README";
    QTest::newRow("only leading point") << "/a/.script" << false << "";
    QTest::newRow("cyrillic") << "/a/Проба.script" << false << "Проба";
}

void FileUtilitiesTest::filename()
{
    QFETCH(QString, path);
    QFETCH(bool, withSuffix);
    QFETCH(QString, expected);
    QCOMPARE(FileUtilities::filename(path, withSuffix), expected);
}

void FileUtilitiesTest::createIfNotExistsMakesTheWholeChain()
{
    QTemporaryDir dir;
    const QString deep = dir.filePath(QStringLiteral("a/b/c"));
    QVERIFY(FileUtilities::createIfNotExists(deep));
    QVERIFY(QFileInfo(deep).isDir());
    QVERIFY(FileUtilities::createIfNotExists(deep));
}

void FileUtilitiesTest::clearFolderOnAMissingFolderDoesNothing()
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing"));
    QVERIFY(!FileUtilities::clearFolder(missing, false));
    QVERIFY(!FileUtilities::clearFolder(missing, true));
    QVERIFY(!QFileInfo::exists(missing));
}

void FileUtilitiesTest::clearFolderRemovesAndOptionallyRecreates()
{
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("f"));
    touch(folder + QStringLiteral("/sub/file.txt"));
    QVERIFY(FileUtilities::clearFolder(folder, true));
    QVERIFY(!QFileInfo::exists(folder));

    touch(folder + QStringLiteral("/file.txt"));
    QVERIFY(FileUtilities::clearFolder(folder, false));
    QVERIFY(QFileInfo(folder).isDir());
    QVERIFY(QDir(folder).isEmpty());
}

void FileUtilitiesTest::filesOfTypeAcceptAnySpellingOfTheSuffix()
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("b.csv")));
    touch(dir.filePath(QStringLiteral("A.csv")));
    touch(dir.filePath(QStringLiteral("c.txt")));
    const QStringList expected {QStringLiteral("A.csv"), QStringLiteral("b.csv")};
    for (const QString &type :
         {QStringLiteral("csv"), QStringLiteral(".csv"), QStringLiteral("*.csv")})
        QCOMPARE(FileUtilities::getFilesOfType(dir.path(), type, false, false), expected);
    QCOMPARE(FileUtilities::getFilesOfType(dir.path(), QStringLiteral("csv"), false, true),
             QStringList {QDir(dir.path()).absoluteFilePath(QStringLiteral("A.csv"))}
                 << QDir(dir.path()).absoluteFilePath(QStringLiteral("b.csv")));
    QCOMPARE(FileUtilities::getFilesOfTypes(
                 dir.path(), {QStringLiteral("csv"), QStringLiteral("txt")}, false, false)
                 .size(),
             3);
    QVERIFY(FileUtilities::getFilesOfType(dir.filePath(QStringLiteral("none")),
                                          QStringLiteral("csv"), true, true)
                .isEmpty());
}

void FileUtilitiesTest::filesOfTypeWithEmptyTypeListsEverything()
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("a.csv")));
    touch(dir.filePath(QStringLiteral("b")));
    QDir().mkpath(dir.filePath(QStringLiteral("sub")));
    const QStringList all = FileUtilities::getFilesOfType(dir.path(), QString(), false, false);
    QCOMPARE(all,
             (QStringList {QStringLiteral("."), QStringLiteral(".."), QStringLiteral("a.csv"),
                           QStringLiteral("b"), QStringLiteral("sub")}));
}

void FileUtilitiesTest::filesOfTypeRecursesWithRelativeNames()
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("top.script")));
    touch(dir.filePath(QStringLiteral("sub/inner.script")));
    touch(dir.filePath(QStringLiteral("sub/deeper/deep.script")));
    touch(dir.filePath(QStringLiteral("sub/other.txt")));
    const QStringList relative =
        FileUtilities::getFilesOfType(dir.path(), QStringLiteral("script"), true, false);
    QCOMPARE(relative,
             (QStringList {QStringLiteral("top.script"), QStringLiteral("sub/inner.script"),
                           QStringLiteral("sub/deeper/deep.script")}));
    const QStringList full =
        FileUtilities::getFilesOfType(dir.path(), QStringLiteral("script"), true, true);
    QCOMPARE(full.last(),
             QDir(dir.path()).absolutePath() + QStringLiteral("/sub/deeper/deep.script"));
}

void FileUtilitiesTest::subfoldersSkipDotFoldersAndEndInSlash()
{
    QTemporaryDir dir;
    QDir().mkpath(dir.filePath(QStringLiteral("b/inner")));
    QDir().mkpath(dir.filePath(QStringLiteral("a")));
    QDir().mkpath(dir.filePath(QStringLiteral(".hidden")));
    touch(dir.filePath(QStringLiteral("file.txt")));
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), false, false),
             (QStringList {QStringLiteral("a/"), QStringLiteral("b/")}));
    const QString root = FileUtilities::FolderSlash(dir.path());
    QCOMPARE(FileUtilities::GetSubfolders(dir.path(), true, true),
             (QStringList {root + QStringLiteral("a/"), root + QStringLiteral("b/"),
                           root + QStringLiteral("b/inner/")}));
}

void FileUtilitiesTest::writeAtomicallyReplacesOrLeavesTheOldFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Settings.xml"));
    QVERIFY(FileUtilities::writeAtomically(path, "first"));
    QVERIFY(FileUtilities::writeAtomically(path, "second"));
    QCOMPARE(TestFiles::read(path), QByteArray("second"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"Settings.xml"});

    // A target that can't be replaced (a folder stands there) fails and stays as it was.
    const QString folder = dir.filePath(QStringLiteral("taken"));
    touch(folder + QStringLiteral("/keep.txt"));
    QVERIFY(!FileUtilities::writeAtomically(folder, "data"));
    QVERIFY(QFileInfo::exists(folder + QStringLiteral("/keep.txt")));
    QVERIFY(!FileUtilities::writeAtomically(QString(), "data"));
}

// A file size limit makes the write stop half-way, as a full disk would.
void FileUtilitiesTest::writeFailingHalfWayLeavesTheOldFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("User.xml"));
    QVERIFY(FileUtilities::writeAtomically(path, "old content"));

    rlimit original {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &original), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = original;
    small.rlim_cur = 100;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = FileUtilities::writeAtomically(path, QByteArray(5000, 'x'));
    setrlimit(RLIMIT_FSIZE, &original);
    std::signal(SIGXFSZ, oldHandler);

    QVERIFY(!written);
    QCOMPARE(TestFiles::read(path), QByteArray("old content"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"User.xml"});
}

QTEST_GUILESS_MAIN(FileUtilitiesTest)
#include "tst_fileutilities.moc"
