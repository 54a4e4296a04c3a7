#include "app/TarveloModel.h"
#include "data/TarveloUser.h"
#include "foundation/FileUtilities.h"
#include "support/TestDataFolder.h"

#include <QDir>
#include <QtTest>

namespace {
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString GuidEnd = QStringLiteral(" (") + Guid + QLatin1Char(')');

// Plays a short run for the current subject, so that its session file is written.
void recordSession(TarveloModel &model)
{
    model.handleDeviceMessage(QStringLiteral("scriptStarted=Проба"));
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
}

// The entries of a folder, by name.
QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                                  QDir::Name);
}
} // namespace

class SubjectFoldersTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init() { m_data.clear(); }

    void folderNameIsSafe_data();
    void folderNameIsSafe();
    void hostileNamesStayInsideRecordsAndListed_data();
    void hostileNamesStayInsideRecordsAndListed();
    void userFileWithoutGuidGetsAStableOneAndIsNotWritten();

private:
    TestDataFolder m_data;
};

void SubjectFoldersTest::folderNameIsSafe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("keptEnd");
    QTest::addColumn<QString>("folder");
    const QString zhe(1, QChar(0x0416));                    // two bytes in UTF-8
    const QString euro(1, QChar(0x20AC));                   // three bytes
    const QString smile = QString::fromUcs4(U"\U0001F600"); // four bytes, two UTF-16 units
    QTest::newRow("plain") << "Иванов Иван" << GuidEnd << "Иванов Иван" + GuidEnd;
    QTest::newRow("separators") << "../a/b\\c" << QString() << "_._a_b_c";
    QTest::newRow("parent") << ".." << QString() << "__";
    QTest::newRow("hidden") << ".hidden" << GuidEnd << "_hidden" + GuidEnd;
    QTest::newRow("refused by Windows") << "c:\"<>|?*d" << QString() << "c_______d";
    QTest::newRow("controls") << QString::fromUtf8("a\x01\tb\x7f") + QChar(0x85) << QString()
                              << "a__b__";
    QTest::newRow("trailing dot") << "Jr." << QString() << "Jr_";
    QTest::newRow("trailing blank") << "Jr " << QString() << "Jr_";
    QTest::newRow("inner dots stay") << "a..b" << QString() << "a..b";
    QTest::newRow("nothing") << QString() << QString() << "_";
    QTest::newRow("long name, GUID kept")
        << zhe.repeated(300) << GuidEnd << zhe.repeated((255 - 39) / 2) + GuidEnd;
    QTest::newRow("cut at whole characters")
        << euro.repeated(100) << "x" << euro.repeated(84) + "x";
    QTest::newRow("pairs stay whole") << smile.repeated(70) << QString() << smile.repeated(63);
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) + "a" << QString() << "_a";
    QTest::newRow("hostile end") << "a"
                                 << "(../x)"
                                 << "a(.._x)";
}

void SubjectFoldersTest::folderNameIsSafe()
{
    QFETCH(QString, name);
    QFETCH(QString, keptEnd);
    QFETCH(QString, folder);
    const QString made = FileUtilities::safeFolderName(name, keptEnd);
    QCOMPARE(made, folder);
    QVERIFY(made.toUtf8().size() <= 255);
}

void SubjectFoldersTest::hostileNamesStayInsideRecordsAndListed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("renamed");
    QTest::newRow("up and out") << "../../x"
                                << "../../../../y";
    QTest::newRow("separators") << "a/b"
                                << "c\\d/";
    QTest::newRow("dots") << ".."
                          << ".";
    QTest::newRow("refused") << "c:*?"
                             << "a|z";
    QTest::newRow("too long") << QString(300, QChar(0x0416)) << QString(400, QLatin1Char('w'));
}

// Whatever the operator types, the subject's folder is a direct child of "Records", its
// sessions go there, it is listed after every reload, and a rename keeps its sessions.
void SubjectFoldersTest::hostileNamesStayInsideRecordsAndListed()
{
    QFETCH(QString, name);
    QFETCH(QString, renamed);
    TarveloModel model;
    TarveloUser user;
    user.setLastName(name);
    user.setGUID(Guid);
    model.addUser(&user);
    QVERIFY(model.currentUser());
    QCOMPARE(model.currentUser()->getLastName(), name); // the name itself is kept as typed
    recordSession(model);

    TarveloUser edited;
    edited.copyFrom(model.currentUser());
    edited.setLastName(renamed);
    QVERIFY(model.updateUser(Guid, &edited));
    QCOMPARE(model.users().size(), 1);
    QCOMPARE(model.currentUser()->getLastName(), renamed);
    const QString folder = QDir::cleanPath(model.userFolder(model.currentUser()));
    QCOMPARE(QFileInfo(folder).absolutePath(), QDir(m_data.records()).absolutePath());
    QCOMPARE(TestDataFolder::sessionFiles(folder).size(), 1);
    QCOMPARE(entries(m_data.records()), QStringList {QDir(folder).dirName()});
    QCOMPARE(entries(m_data.root()), (QStringList {"Records", "Scripts", "Settings.xml"}));
    QCOMPARE(entries(m_data.documents() + QStringLiteral("/Mirenthalic")), QStringList {"Tarvelo"});
}

void SubjectFoldersTest::userFileWithoutGuidGetsAStableOneAndIsNotWritten()
{
    const QString file = m_data.records() + QStringLiteral("By hand/User.xml");
    const QByteArray written = "<TarveloUser><LastName>Сидоров</LastName></TarveloUser>";
    QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()) && TestFiles::write(file, written));
    QString guid;
    {
        TarveloModel model;
        QCOMPARE(model.users().size(), 1);
        guid = model.users().constFirst()->getGUID();
        QVERIFY(!guid.isEmpty());
        model.selectUser(guid);
        recordSession(model);
        QCOMPARE(TestDataFolder::sessionFiles(QFileInfo(file).absolutePath()).size(), 1);
    }
    QCOMPARE(TestFiles::read(file), written);
    TarveloModel restarted;
    QVERIFY(restarted.currentUser());
    QCOMPARE(restarted.currentUser()->getGUID(), guid);
}

QTEST_GUILESS_MAIN(SubjectFoldersTest)
#include "tst_subjectfolders.moc"
