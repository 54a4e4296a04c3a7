#include "foundation/AppHelper.h"
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
        const FileSizeLimit fullDisk(100);
        QVERIFY(!FileUtilities::writeAtomically(path, QByteArray(5000, 'x')));
    }
    touch(dir.filePath(QStringLiteral("taken/keep.txt")));
    QVERIFY(!FileUtilities::writeAtomically(dir.filePath(QStringLiteral("taken")), "data"));
    QVERIFY(!FileUtilities::writeAtomically(QString(), "data"));
    QCOMPARE(TestFiles::read(path), QByteArray("old content"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"User.xml"});
}

QTEST_GUILESS_MAIN(FoundationTest)
#include "tst_foundation.moc"
