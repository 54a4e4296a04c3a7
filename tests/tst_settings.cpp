#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "support/ExampleSettings.h"
#include "support/TestFiles.h"

#include <QtTest>

namespace {
// Translates a few texts, as an installed translation file would.
class FakeTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        static const QMap<QString, QString> texts = {
            {"Generic|ComPort", "COM-порт"},
            {"Generic|Common", "Общее"},
            {"Generic| Hz", " Гц"},
            {"Generic|What it is", "Что это"},
            {"ExportBehaviorOption|OnExport_OpenFile", "Открыть файл"},
        };
        return texts.value(QString::fromLatin1(context) + '|' + QString::fromUtf8(source));
    }
};

void fillExample(ExampleSettings &settings)
{
    settings.setOrigin(QPoint(-3, 14));
    settings.setAnchor(QPointF(0.1, 2.123456789));
    settings.setFrame(QSize(800, 600));
    settings.setBlob(QByteArray("\x00\x01\xffhello", 8));
    // A key that can't be an element name is left out rather than spoiling the whole file.
    settings.setLabels({{"alpha", "A & B"}, {"beta", ""}, {"not a name", "lost"}});
    settings.setTint(QColor(0x12, 0x34, 0x56));
    settings.setStamp(QStringLiteral("<x> \"quoted\""));
    settings.setLevel(7);
    settings.setCounter(9);
    settings.setDraft(QStringLiteral("never stored"));
}

} // namespace

class SettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void filesAreWrittenExactlyAndReadBack();
    void capabilitiesMatchTheGoldenFile();
    void values_data();
    void values();
    void hostileFilesLeaveTheDefaults_data();
    void hostileFilesLeaveTheDefaults();
    void fullName_data() { TestFiles::addRows(QStringLiteral("tables/subject_names.txt")); }
    void fullName();
    void brokenSubjectFileReadsAsAnEmptySubject();

private:
    QTemporaryDir m_dir;
    QString m_path;
};

void SettingsTest::init()
{
    QVERIFY(m_dir.isValid());
    // The application's file name is relative: it lands in the working folder.
    QVERIFY(QDir::setCurrent(m_dir.path()));
    m_path = m_dir.filePath(TarveloSettings::fileName());
    QFile::remove(m_path);
}

void SettingsTest::filesAreWrittenExactlyAndReadBack()
{
    {
        TarveloSettings settings;
        QVERIFY(settings.reload()); // no file yet: the defaults, and none is written
        QVERIFY(!QFile::exists(m_path));
        settings.setLastUserGuid(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
        settings.setLastScriptTitle(QStringLiteral("Проба"));
    }
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("Settings.xml"), TestFiles::read(m_path)));

    TarveloUser user;
    user.setLastName(QStringLiteral("Иванов"));
    user.setFirstName(QStringLiteral("Иван"));
    user.setMiddleName(QStringLiteral("Иванович"));
    user.setDOBYear(1990);
    user.setDOBMonth(5);
    user.setDOBDay(17);
    user.setGender(TarveloUser::Male);
    user.setGUID(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    user.saveIn(m_dir.path());
    const QByteArray userFile = TestFiles::read(user.getFilepath());
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("User.xml"), userFile));
    TarveloUser readUser;
    readUser.setFilepath(user.getFilepath());
    QVERIFY(readUser.reload());
    QCOMPARE(readUser.saveToString().toUtf8(), userFile);

    ExampleSettings example;
    fillExample(example);
    const QString xml = example.saveToString();
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("ExampleSettings.xml"), xml.toUtf8()));
    ExampleSettings readExample;
    QSignalSpy reloaded(&readExample, &NTSettings::reloaded);
    QVERIFY(readExample.loadFromXMLString(xml));
    QCOMPARE(reloaded.count(), 1);
    QCOMPARE(readExample.saveToString(), xml);
    QCOMPARE(readExample.getDraft(), QStringLiteral("draft")); // never stored
}

void SettingsTest::capabilitiesMatchTheGoldenFile()
{
    FakeTranslator translator;
    QCoreApplication::installTranslator(&translator);
    TarveloSettings settings;
    settings.setAutoSave(false);
    TarveloUser user;
    ExampleSettings example;
    example.getPropertyByName(QStringLiteral("Stamp"))->setEnums({"one", "two"});

    const QJsonObject all {
        {"TarveloSettings", settings.getAllCapabilitiesJson(true)},
        {"TarveloSettings shown", settings.getAllCapabilitiesJson(false).size()},
        {"TarveloSettings categories",
         QJsonArray::fromStringList(settings.metaDescriptor()->categories())},
        {"TarveloUser", user.getAllCapabilitiesJson(true)},
        {"ExampleSettings", example.getAllCapabilitiesJson(true)},
        {"ExampleSettings display order",
         [&example] {
             QJsonArray names;
             for (const AbstractMetaDescription *description :
                  example.metaDescriptor()->displayOrder())
                 names << description->displayName();
             return names;
         }()},
    };
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("capabilities.json"),
                                     QJsonDocument(all).toJson(QJsonDocument::Indented)));
}

void SettingsTest::values_data()
{
    TestFiles::addRows(QStringLiteral("tables/settings_values.txt"));
    const QString deep =
        QStringLiteral("<n>").repeated(100000) + QStringLiteral("</n>").repeated(100000);
    QTest::newRow("deep nesting") << QString()
                                  << "<x>" + deep + "<sm1>1" + deep + "</sm1><stop>8</stop></x>"
                                  << "sm1=1 stop=8";
}

void SettingsTest::values()
{
    QFETCH(QString, property);
    QFETCH(QString, input);
    QFETCH(QString, expected);
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(3);
    settings.setExportBehavior(TarveloSettings::OnExport_OpenFolder);
    ExampleSettings example;
    QString written;
    if (property.isEmpty()) {
        QVERIFY(settings.loadFromXMLString(input));
        example.loadFromXMLString(input);
    } else if (!example.setTextValue(property, input)) {
        written = QStringLiteral("refused");
    }
    const QString xml = settings.saveToString() + example.saveToString();
    const QRegularExpression element(QStringLiteral("<(\\w+)>([^<]*)</\\1>"));
    for (const QString &pair : expected.split(' ')) {
        const QString name = pair.section('=', 0, 0);
        const QRegularExpressionMatch match = element.match(xml.mid(xml.indexOf('<' + name + '>')));
        if (match.hasMatch() && match.captured(1) == name)
            written += (written.isEmpty() ? "" : " ") + name + '=' + match.captured(2);
    }
    QCOMPARE(written, expected);
}

void SettingsTest::hostileFilesLeaveTheDefaults_data()
{
    TestFiles::addRows(QStringLiteral("tables/hostile_settings.txt"));
    QByteArray garbage;
    quint32 seed = 12345;
    for (int i = 0; i < 64 * 1024; ++i) {
        seed = seed * 1103515245u + 12345u;
        garbage.append(char(seed >> 24));
    }
    QTest::newRow("binary garbage") << garbage;
    QTest::newRow("garbage after a good start") << "<TarveloSettings>\x01<ComPort>" + garbage;
}

void SettingsTest::hostileFilesLeaveTheDefaults()
{
    QFETCH(QByteArray, content);
    QVERIFY(TestFiles::write(m_path, content));
    TarveloSettings settings;
    QSignalSpy saved(&settings, &NTSettings::saved);
    QVERIFY(settings.reload());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(settings.getComPort(), 1);
    QVERIFY(settings.getLastScriptTitle().size() < 1000);
    QVERIFY(!settings.getLastScriptTitle().contains(QStringLiteral("root:")));
    QCOMPARE(TestFiles::read(m_path), content); // reading never writes
}

void SettingsTest::fullName()
{
    QFETCH(QStringList, parts);
    QFETCH(QString, without);
    QFETCH(QString, with);
    TarveloUser user;
    user.setLastName(parts[0]);
    user.setFirstName(parts[1]);
    user.setMiddleName(parts[2]);
    user.setGUID(parts[3]);
    QCOMPARE(user.fullName(false), without);
    QCOMPARE(user.fullName(true), with);
}

void SettingsTest::brokenSubjectFileReadsAsAnEmptySubject()
{
    // A control character breaks the document there: an empty subject.
    QVERIFY(TestFiles::write(m_path, "<TarveloUser><LastName>Иванов\x01</LastName><GUID>g</GUID>"));
    TarveloUser broken;
    broken.setFilepath(m_path);
    QVERIFY(broken.reload());
    QVERIFY(broken.fullName(true).isEmpty());
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
