#include "data/TarveloUser.h"
#include "foundation/AbstractMetaDescription.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString goldenPath()
{
    return QStringLiteral(TARVELO_TEST_DATA "/User.xml");
}

void fillIvanov(TarveloUser &user)
{
    user.setLastName(QStringLiteral("Иванов"));
    user.setFirstName(QStringLiteral("Иван"));
    user.setMiddleName(QStringLiteral("Иванович"));
    user.setDOBYear(1990);
    user.setDOBMonth(5);
    user.setDOBDay(17);
    user.setGender(TarveloUser::Male);
    user.setGUID(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
}

} // namespace

class TarveloUserTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void userFileIsWrittenExactly();
    void userFileReadsBack();
    void newUserHasDefaultsAndNoFile();
    void blanksAreKeptInTheFileButNotInTheName();
    void fullName_data();
    void fullName();
    void createGuidGivesBareLowerCaseHex();
    void copyFromKeepsToTheLimits();
    void copyFromAnnouncesEachDifferingField();
    void copyFromSavesWhenFiled();
    void saveInCreatesTheSubjectFolder();
    void unreadableUserFileGivesAnEmptySubject();

private:
    QTemporaryDir m_dir;
    QString m_records;
};

void TarveloUserTest::init()
{
    QVERIFY(m_dir.isValid());
    m_records = m_dir.filePath(QStringLiteral("Records"));
    QDir(m_records).removeRecursively();
}

void TarveloUserTest::userFileIsWrittenExactly()
{
    TarveloUser user;
    fillIvanov(user);
    user.saveIn(m_records);
    const QString path = m_records
        + QStringLiteral("/Иванов Иван Иванович (4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10)/")
        + TarveloUser::fileName();
    QCOMPARE(user.getFilepath(), path);
    QCOMPARE(TestFiles::read(path), TestFiles::read(goldenPath()));
}

void TarveloUserTest::userFileReadsBack()
{
    const QString path = m_dir.filePath(QStringLiteral("User.xml"));
    QFile::remove(path);
    QVERIFY(QFile::copy(goldenPath(), path));
    TarveloUser user;
    user.setFilepath(path);
    QSignalSpy saved(&user, &NTSettings::saved);
    QVERIFY(user.reload());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(user.fullName(false), QStringLiteral("Иванов Иван Иванович"));
    QCOMPARE(user.getDOBYear(), 1990);
    QCOMPARE(user.getDOBMonth(), 5);
    QCOMPARE(user.getDOBDay(), 17);
    QCOMPARE(user.getGender(), TarveloUser::Male);
    QCOMPARE(user.getGUID(), QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    QVERIFY(user.getComment().isEmpty());
    QCOMPARE(user.saveToString().toUtf8(), TestFiles::read(goldenPath()));
}

void TarveloUserTest::newUserHasDefaultsAndNoFile()
{
    TarveloUser user;
    QVERIFY(user.getFilepath().isEmpty());
    QVERIFY(!user.reload());
    QCOMPARE(user.getGender(), TarveloUser::Undefined);
    QCOMPARE(user.getDOBDay(), 0); // a date part of 0 means unknown, and is legal
    QVERIFY(user.fullName(true).isEmpty());
    // Which fields there are, and in what order, the golden file pins down.
    for (const QString &name : user.getPropertiesNames()) {
        const AbstractMetaDescription *description = user.getPropertyByName(name);
        QVERIFY2(description->editable() && description->visible(), qPrintable(name));
        QVERIFY2(!description->showDefault(), qPrintable(name));
    }
}

void TarveloUserTest::blanksAreKeptInTheFileButNotInTheName()
{
    TarveloUser user;
    user.setLastName(QStringLiteral("  Петров "));
    user.setFirstName(QStringLiteral("\tПётр"));
    user.setComment(QStringLiteral("line one\nline two"));
    const QString xml = user.saveToString();
    QVERIFY(xml.contains(QStringLiteral("<LastName>  Петров </LastName>")));
    QCOMPARE(user.fullName(false), QStringLiteral("Петров Пётр"));

    TarveloUser read;
    read.loadFromXMLString(xml);
    QCOMPARE(read.getLastName(), QStringLiteral("  Петров "));
    QCOMPARE(read.getComment(), QStringLiteral("line one\nline two"));
}

void TarveloUserTest::fullName_data()
{
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("middle");
    QTest::addColumn<QString>("guid");
    QTest::addColumn<QString>("without");
    QTest::addColumn<QString>("with");
    QTest::newRow("all parts") << "Иванов"
                               << "Иван"
                               << "Иванович"
                               << "abc"
                               << "Иванов Иван Иванович"
                               << "Иванов Иван Иванович (abc)";
    QTest::newRow("no GUID") << "Иванов"
                             << "Иван"
                             << ""
                             << ""
                             << "Иванов Иван"
                             << "Иванов Иван";
    QTest::newRow("only the GUID") << ""
                                   << " "
                                   << ""
                                   << " abc "
                                   << ""
                                   << "(abc)";
    QTest::newRow("blank parts skipped") << " "
                                         << "Анна"
                                         << "\t"
                                         << ""
                                         << "Анна"
                                         << "Анна";
    QTest::newRow("inner blanks kept") << "Ван  дер"
                                       << ""
                                       << ""
                                       << "g"
                                       << "Ван  дер"
                                       << "Ван  дер (g)";
    QTest::newRow("nothing") << ""
                             << ""
                             << ""
                             << ""
                             << ""
                             << "";
}

void TarveloUserTest::fullName()
{
    QFETCH(QString, last);
    QFETCH(QString, first);
    QFETCH(QString, middle);
    QFETCH(QString, guid);
    QFETCH(QString, without);
    QFETCH(QString, with);
    TarveloUser user;
    user.setLastName(last);
    user.setFirstName(first);
    user.setMiddleName(middle);
    user.setGUID(guid);
    QCOMPARE(user.fullName(false), without);
    QCOMPARE(user.fullName(true), with);
}

void TarveloUserTest::createGuidGivesBareLowerCaseHex()
{
    TarveloUser user;
    QSignalSpy changed(&user, &TarveloUser::changedGUID);
    user.createGuid();
    const QString guid = user.getGUID();
    static const QRegularExpression form(
        QStringLiteral("^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$"));
    QVERIFY2(form.match(guid).hasMatch(), qPrintable(guid));
    QCOMPARE(changed.count(), 1);
    user.createGuid();
    QVERIFY(user.getGUID() != guid);
}

void TarveloUserTest::copyFromKeepsToTheLimits()
{
    TarveloUser source;
    source.setDOBDay(40);
    source.setDOBMonth(31); // the day isn't compared with the month, only with its own limit
    source.setDOBYear(9999);
    TarveloUser copy;
    copy.copyFrom(&source);
    QCOMPARE(copy.getDOBDay(), 31);
    QCOMPARE(copy.getDOBMonth(), 12);
    QCOMPARE(copy.getDOBYear(), 5432);

    source.setDOBDay(-3);
    copy.copyFrom(&source);
    QCOMPARE(copy.getDOBDay(), 0);
    copy.copyFrom(nullptr); // nothing happens
    QCOMPARE(copy.getDOBDay(), 0);
}

void TarveloUserTest::copyFromAnnouncesEachDifferingField()
{
    TarveloUser source;
    fillIvanov(source);
    source.setComment(QStringLiteral("note"));
    TarveloUser copy;
    copy.setLastName(QStringLiteral("Иванов")); // already equal: not announced
    QSignalSpy properties(&copy, &NTSettings::propertyChanged);
    QSignalSpy day(&copy, &TarveloUser::changedDOBDay);
    QSignalSpy lastName(&copy, &TarveloUser::changedLastName);
    QSignalSpy gender(&copy, &TarveloUser::changedGender);
    copy.copyFrom(&source);

    QStringList order;
    for (const QList<QVariant> &call : qAsConst(properties))
        order << call.at(0).toString();
    QCOMPARE(order,
             (QStringList {"FirstName", "MiddleName", "DOBDay", "DOBMonth", "DOBYear", "Gender",
                           "GUID", "Comment"}));
    QCOMPARE(day.count(), 1);
    QCOMPARE(day.first().at(0).toInt(), 17);
    QCOMPARE(lastName.count(), 0);
    QCOMPARE(gender.count(), 1);
    QCOMPARE(copy.saveToString(), source.saveToString());

    properties.clear();
    copy.copyFrom(&source);
    QCOMPARE(properties.count(), 0);
}

void TarveloUserTest::copyFromSavesWhenFiled()
{
    TarveloUser filed;
    filed.setGUID(QStringLiteral("g"));
    filed.saveIn(m_records);
    QSignalSpy saved(&filed, &NTSettings::saved);
    TarveloUser source;
    source.setGUID(QStringLiteral("g"));
    source.setLastName(QStringLiteral("Сидоров"));
    source.setDOBYear(1980);
    filed.copyFrom(&source);
    QCOMPARE(saved.count(), 2);
    QVERIFY(TestFiles::read(filed.getFilepath()).contains("<DOBYear>1980</DOBYear>"));
}

void TarveloUserTest::saveInCreatesTheSubjectFolder()
{
    TarveloUser user;
    user.setLastName(QStringLiteral("Петрова"));
    user.setFirstName(QStringLiteral("Анна"));
    user.createGuid();
    QSignalSpy saved(&user, &NTSettings::saved);
    user.saveIn(m_records + QStringLiteral("\\")); // separators of either kind
    const QString folder =
        m_records + QStringLiteral("/Петрова Анна (") + user.getGUID() + QStringLiteral(")/");
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(user.getFilepath(), folder + QStringLiteral("User.xml"));
    QCOMPARE(saved.count(), 1);

    TarveloUser read;
    read.setFilepath(folder + QStringLiteral("User.xml"));
    QVERIFY(read.reload());
    QCOMPARE(read.fullName(true), user.fullName(true));

    // A subject without a name is filed under its bracketed GUID alone.
    TarveloUser anonymous;
    anonymous.createGuid();
    anonymous.saveIn(m_records);
    QVERIFY(QFile::exists(m_records + QStringLiteral("/(") + anonymous.getGUID()
                          + QStringLiteral(")/User.xml")));
}

void TarveloUserTest::unreadableUserFileGivesAnEmptySubject()
{
    const QString path = m_dir.filePath(QStringLiteral("Broken.xml"));
    QByteArray broken = TestFiles::read(goldenPath());
    broken.truncate(broken.indexOf("<DOBYear>"));
    QVERIFY(TestFiles::write(path, broken.replace("Иванов<", "Иванов\x01<")));
    TarveloUser user;
    user.setFilepath(path);
    QVERIFY(user.reload());
    QVERIFY(user.getLastName().isEmpty()); // the control character breaks the document there
    QVERIFY(user.getGUID().isEmpty());
    QCOMPARE(user.getDOBYear(), 0);
}

QTEST_GUILESS_MAIN(TarveloUserTest)
#include "tst_tarvelouser.moc"
