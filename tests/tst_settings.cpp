#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/MetaDescriptor.h"
#include "foundation/PropertyCapabilities.h"
#include "support/ExampleSettings.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <limits>

// Declarations at the edges of the key language; what becomes of them is in the golden file of
// capabilities.
class Declarations : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Quoted MEMBER m_quoted)
    Q_CLASSINFO("QuotedEditable", "true")
    Q_CLASSINFO("QuotedDefault", "\"Untitled\"")
    Q_CLASSINFO("QuotedDisplayName", "Zeta")
    Q_CLASSINFO("QuotedDescription", "What it is")
    Q_CLASSINFO("QuotedPlaceholder", "type here")
    Q_CLASSINFO("QuotedPrecision", "")
    Q_CLASSINFO("QuotedSpecialType", "PickFile:*.csv:*.txt")

    Q_PROPERTY(QString Unquoted MEMBER m_unquoted)
    Q_CLASSINFO("UnquotedEditable", "true")
    Q_CLASSINFO("UnquotedDefault", "plain text")
    Q_CLASSINFO("UnquotedNotVisible", "false")
    Q_CLASSINFO("UnquotedPriority", "1")

    Q_PROPERTY(Mode Scoped MEMBER m_scoped)
    Q_CLASSINFO("ScopedEditable", "true")
    Q_CLASSINFO("ScopedDefault", "Declarations::Mode::Second")
    Q_CLASSINFO("ScopedReadOnly", "")
    Q_CLASSINFO("ScopedNoDefault", "false")

    // Without "::" the first character goes.
    Q_PROPERTY(Mode Unscoped MEMBER m_unscoped)
    Q_CLASSINFO("UnscopedEditable", "TRUE")
    Q_CLASSINFO("UnscopedDefault", "Second")

    Q_PROPERTY(double Ratio MEMBER m_ratio)
    Q_CLASSINFO("RatioEditable", "true")
    Q_CLASSINFO("RatioDefault", "2.5f")
    Q_CLASSINFO("RatioMinimum", "QSize(10, 20)")
    Q_CLASSINFO("RatioMaximum", "lots")
    Q_CLASSINFO("RatioStep", "0.25")
    Q_CLASSINFO("RatioSuffix", "!-x")
    Q_CLASSINFO("RatioPrefix", "~")
    Q_CLASSINFO("RatioCategory", "Numbers")
    Q_CLASSINFO("RatioPriority", "first")
    Q_CLASSINFO("RatioVisibleBound", "!Flag;Mode:a:b;Other")
    Q_CLASSINFO("RatioVisibleBinded", "Ignored:true")

    Q_PROPERTY(int Count MEMBER m_count)
    Q_CLASSINFO("CountDefault", "12px")
    Q_CLASSINFO("CountMinimum", "none")
    Q_CLASSINFO("CountCategory", "Numbers")
    Q_CLASSINFO("CountVisibleBinded", "Flag")

    Q_PROPERTY(QColor Named MEMBER m_named)
    Q_CLASSINFO("NamedDefault", "QColor(\"blue\")")
    Q_PROPERTY(QDate Day MEMBER m_day)
    Q_CLASSINFO("DayDefault", "QDate()")
    Q_PROPERTY(QString Called MEMBER m_called)
    Q_CLASSINFO("CalledDefault", "noSuchMethod()")

    // Not writable: not described.
    Q_PROPERTY(int Constant READ constant)
    Q_CLASSINFO("ConstantEditable", "true")

public:
    enum Mode { First, Second };
    Q_ENUM(Mode)

    Declarations() { qRegisterMetaType<Mode>(); }
    int constant() const { return 1; }

private:
    QString m_quoted;
    QString m_unquoted;
    Mode m_scoped = First;
    Mode m_unscoped = First;
    double m_ratio = 0;
    int m_count = 0;
    QColor m_named;
    QDate m_day;
    QString m_called;
};

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

QJsonArray names(const QList<AbstractMetaDescription *> &descriptions)
{
    QJsonArray list;
    for (const AbstractMetaDescription *description : descriptions)
        list << description->displayName();
    return list;
}

const int IntMax = std::numeric_limits<int>::max();
const int IntMin = std::numeric_limits<int>::min();
} // namespace

class SettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void filesAreWrittenExactlyAndReadBack();
    void capabilitiesMatchTheGoldenFile();
    void defaultPrefersTheClassOwnReset();
    void textValues_data();
    void textValues();
    void xmlReader_data();
    void xmlReader();
    void hostileFilesLeaveTheDefaults_data();
    void hostileFilesLeaveTheDefaults();
    void autosaveWritesTheWholeFileOncePerChange();
    void jsonFormIsCompactAndReadsBack();
    void brokenJsonIsRefused_data();
    void brokenJsonIsRefused();
    void severalObjectsInOneFile();
    void toogleItemInStringList_data();
    void toogleItemInStringList();
    void fullName_data();
    void fullName();
    void subjectCopyKeepsToTheLimitsAndAnnouncesChanges();
    void subjectIsFiledUnderItsNameAndGuid();

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
    TarveloSettings settings;
    QVERIFY(settings.reload());
    QCOMPARE(settings.getLastScriptTitle(), QStringLiteral("Проба"));

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
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("noSuchMethod")));
    Declarations declarations;
    MetaDescriptor descriptor;
    descriptor.set(&declarations);
    FakeTranslator translator;
    QCoreApplication::installTranslator(&translator);
    TarveloSettings settings;
    settings.setAutoSave(false);
    TarveloUser user;
    ExampleSettings example;
    example.getPropertyByName(QStringLiteral("Stamp"))->setEnums({"one", "two"});

    QJsonArray declared;
    for (const AbstractMetaDescription *description : descriptor.getProperties())
        declared << PropertyCapabilities::of(description);
    const QJsonObject all {
        {"Declarations", declared},
        {"Declarations display order", names(descriptor.displayOrder())},
        {"Declarations categories", QJsonArray::fromStringList(descriptor.categories())},
        {"TarveloSettings", settings.getAllCapabilitiesJson(true)},
        {"TarveloSettings shown", settings.getAllCapabilitiesJson(false).size()},
        {"TarveloSettings categories",
         QJsonArray::fromStringList(settings.metaDescriptor()->categories())},
        {"TarveloUser", user.getAllCapabilitiesJson(true)},
        {"ExampleSettings", example.getAllCapabilitiesJson(true)},
        {"as text",
         QJsonArray {
             settings.getPropertyCapabilitiesString(settings.getPropertyByName("ComPort")),
             settings.getPropertyCapabilitiesString(settings.getPropertyByName("AutoSearch"))}},
    };
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("capabilities.json"),
                                     QJsonDocument(all).toJson(QJsonDocument::Indented)));
}

void SettingsTest::defaultPrefersTheClassOwnReset()
{
    ExampleSettings example;
    AbstractMetaDescription *counter = example.getPropertyByName(QStringLiteral("Counter"));
    QCOMPARE(example.getCounter(), 7);
    example.setCounter(2);
    QSignalSpy changed(counter, &AbstractMetaDescription::valueChanged);
    counter->setDefault();
    QCOMPARE(example.getCounter(), 7);
    QCOMPARE(changed.last().at(0).toInt(), 7);
    // Without a reset of its own a property takes its declaration.
    example.setTint(Qt::green);
    example.getPropertyByName(QStringLiteral("Tint"))->setDefault();
    QCOMPARE(example.getTint(), QColor(Qt::red));
}

void SettingsTest::textValues_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("stored");
    QTest::newRow("point as code") << "origin"
                                   << "QPoint(1, 2)" << true << "1;2";
    QTest::newRow("point as a pair, cut to integers") << "Origin"
                                                      << "-5.9,6.2" << true << "-5;6";
    QTest::newRow("point with one number") << "Origin"
                                           << "QPoint(1)" << false << "3;4";
    QTest::newRow("point of words") << "Origin"
                                    << "a,b" << false << "3;4";
    QTest::newRow("float point") << "Anchor"
                                 << "QPointF(1.5f, -2.25f)" << true << "1.5;-2.25";
    QTest::newRow("size") << "Frame"
                          << "QSize(10.7, 20)" << true << "10;20";
    QTest::newRow("beyond int sticks to its ends")
        << "Frame"
        << "nan, 3e9" << true << QStringLiteral("0;%1").arg(IntMax);
    QTest::newRow("colour") << "Tint"
                            << "#00ff00" << true << "#00ff00";
    QTest::newRow("number") << "LEVEL"
                            << "12" << true << "12";
    QTest::newRow("unknown property") << "Nothing"
                                      << "1" << false << "";
}

void SettingsTest::textValues()
{
    QFETCH(QString, property);
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    QFETCH(QString, stored);
    ExampleSettings example;
    QCOMPARE(example.setTextValue(property, text), accepted);
    const QString name = property.left(1).toUpper() + property.mid(1).toLower();
    const QString xml = example.saveToString();
    QVERIFY2(stored.isEmpty() || xml.contains("<" + name + ">" + stored + "</"), qPrintable(xml));
}

void SettingsTest::xmlReader_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("expected"); // what the elements named in it read as afterwards
    QTest::newRow("other order and unknown elements")
        << "<x><Colour>red</Colour><AutoSearch>false</AutoSearch><ComPort>7</ComPort></x>"
        << "AutoSearch=false ComPort=7";
    QTest::newRow("nested in unknown elements")
        << "<TarveloSettings><Group><Inner><ComPort>9</ComPort></Inner></Group></TarveloSettings>"
        << "ComPort=9";
    QTest::newRow("names compared exactly")
        << "<TarveloSettings><comport>9</comport></TarveloSettings>"
        << "ComPort=3";
    QTest::newRow("a stray child inside a value is skipped")
        << "<x><ComPort>4<b>x</b></ComPort><AutoSearch>false</AutoSearch></x>"
        << "ComPort=4 AutoSearch=false";
    QTest::newRow("the last one wins") << "<x><ComPort>4</ComPort><ComPort>5</ComPort></x>"
                                       << "ComPort=5";
    QTest::newRow("unreadable values leave the property")
        << "<x><ComPort>2.5</ComPort><ExportBehavior>2</ExportBehavior><maxRepeats>x</maxRepeats>"
           "</x>"
        << "ComPort=3 ExportBehavior=OnExport_OpenFolder maxRepeats=3";
    QTest::newRow("limits are not applied on reading")
        << "<x><ComPort>500</ComPort><maxRepeats>-4</maxRepeats><ExportBehavior>"
           "OnExport_DoNothing</ExportBehavior></x>"
        << "ComPort=500 maxRepeats=-4 ExportBehavior=OnExport_DoNothing";
    QString deep = QStringLiteral("<x>") + QStringLiteral("<n>").repeated(100000)
        + QStringLiteral("<ComPort>42</ComPort>") + QStringLiteral("</n>").repeated(100000)
        + QStringLiteral("<sm1>1") + QStringLiteral("<n>").repeated(100000)
        + QStringLiteral("</n>").repeated(100000) + QStringLiteral("</sm1><stop>8</stop></x>");
    QTest::newRow("deep nesting is no trouble") << deep << "ComPort=42 sm1=1 stop=8";
    QTest::newRow("a point with one part is zero, a size cut toward zero")
        << "<x><Origin>12</Origin><Frame>7.9;-1.5</Frame><Anchor>1.9;2.5;9</Anchor></x>"
        << "Origin=0;0 Frame=7;-1 Anchor=1.9;2.5";
    QTest::newRow("coordinates beyond int stick to its ends")
        << "<x><Origin>1e300;-inf</Origin><Frame>2147483648;nan</Frame></x>"
        << QStringLiteral("Origin=%1;%2 Frame=%1;0").arg(IntMax).arg(IntMin);
}

void SettingsTest::xmlReader()
{
    QFETCH(QString, xml);
    QFETCH(QString, expected);
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(3);
    settings.setExportBehavior(TarveloSettings::OnExport_OpenFolder);
    ExampleSettings example;
    QVERIFY(settings.loadFromXMLString(xml));
    example.loadFromXMLString(xml);
    QStringList read;
    for (const QString &pair : expected.split(' ')) {
        const QString name = pair.section('=', 0, 0);
        NTSettings &owner =
            settings.containsProperty(name) ? static_cast<NTSettings &>(settings) : example;
        const QString xmlValue =
            owner.saveToString().section("<" + name + ">", 1).section('<', 0, 0);
        read << name + '=' + xmlValue;
    }
    QCOMPARE(read.join(' '), expected);
}

void SettingsTest::hostileFilesLeaveTheDefaults_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray garbage;
    quint32 seed = 12345;
    for (int i = 0; i < 64 * 1024; ++i) {
        seed = seed * 1103515245u + 12345u;
        garbage.append(char(seed >> 24));
    }
    QTest::newRow("binary garbage") << garbage;
    QTest::newRow("garbage after a good start")
        << QByteArray("<TarveloSettings>\x01\x02<ComPort>") + garbage;
    QTest::newRow("nul bytes") << QByteArray(4096, '\0');
    QTest::newRow("not XML") << QByteArray("ComPort=7\nAutoSearch=false\n");
    QTest::newRow("unclosed value") << QByteArray("<TarveloSettings><ComPort>7");
    QTest::newRow("mismatched tags") << QByteArray("<a><ComPort>7</b></a>");
    QByteArray entities = "<?xml version=\"1.0\"?><!DOCTYPE lolz [<!ENTITY l0 \"lollollol\">";
    for (int i = 1; i < 10; ++i)
        entities += QStringLiteral("<!ENTITY l%1 \"%2\">")
                        .arg(i)
                        .arg(QStringLiteral("&l%1;").arg(i - 1).repeated(10))
                        .toUtf8();
    QTest::newRow("entity expansion")
        << entities + "]><x><LastScriptTitle>&l9;</LastScriptTitle><ComPort>7</ComPort></x>";
    QTest::newRow("external entity") << QByteArray(
        "<?xml version=\"1.0\"?><!DOCTYPE x [ <!ENTITY secret SYSTEM \"file:///etc/passwd\"> ]>"
        "<x><LastScriptTitle>&secret;</LastScriptTitle></x>");
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

void SettingsTest::autosaveWritesTheWholeFileOncePerChange()
{
    TarveloSettings settings;
    QSignalSpy saved(&settings, &NTSettings::saved);
    QSignalSpy changed(&settings, &NTSettings::propertyChanged);
    settings.setComPort(1); // the value it has: no change, no write
    QVERIFY(!QFile::exists(m_path));
    settings.setComPort(4);
    QCOMPARE(changed.takeFirst().at(0).toString(), QStringLiteral("ComPort"));
    QFile::remove(m_path);
    settings.setsp2(QString());
    QCOMPARE(saved.count(), 2);
    QVERIFY(TestFiles::read(m_path).contains("<ComPort>4</ComPort>"));

    // Reading a file announces its values but writes nothing back.
    QVERIFY(TestFiles::write(m_path, "<x><ComPort>12</ComPort></x>"));
    QVERIFY(settings.reload());
    QCOMPARE(settings.getComPort(), 12);
    QCOMPARE(saved.count(), 2);
    QCOMPARE(TestFiles::read(m_path), QByteArray("<x><ComPort>12</ComPort></x>"));

    // Other loaders save each change; without autosave nothing is written.
    settings.loadFromJson(QByteArray(R"({"maxRepeats": 6, "Unknown": 1})"));
    QCOMPARE(saved.count(), 3);
    settings.setAutoSave(false);
    settings.setComPort(5);
    QCOMPARE(saved.count(), 3);
    QVERIFY(TestFiles::read(m_path).contains("<maxRepeats>6</maxRepeats>"));
}

void SettingsTest::jsonFormIsCompactAndReadsBack()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(7);
    settings.setExportBehavior(TarveloSettings::OnExport_DoNothing);
    const QString json = settings.saveToJsonByteArray();
    // Keys sorted, enumerations by key, no blanks.
    QVERIFY(json.startsWith(QStringLiteral(R"({"AutoSearch":true,"ComPort":7,)")));
    QVERIFY(json.contains(QStringLiteral(R"("ExportBehavior":"OnExport_DoNothing")")));
    TarveloSettings read;
    read.setAutoSave(false);
    QVERIFY(read.loadFromJson(json));
    QCOMPARE(read.saveToString(), settings.saveToString());

    // Found by fuzzing: a byte-sized number went out as a one-character string.
    ExampleSettings example;
    example.setLevel(255);
    QCOMPARE(example.saveToJson().value(QStringLiteral("Level")), QJsonValue(255));
}

void SettingsTest::brokenJsonIsRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << QByteArray(R"({"ComPort": 7, "AutoSe)");
    QTest::newRow("array") << QByteArray(R"([{"ComPort": 7}])");
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("deeply nested") << QByteArray(100000, '[') + QByteArray(100000, ']');
}

void SettingsTest::brokenJsonIsRefused()
{
    QFETCH(QByteArray, json);
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(3);
    QSignalSpy reloaded(&settings, &NTSettings::reloaded);
    QVERIFY(!settings.loadFromJson(json));
    QCOMPARE(reloaded.count(), 0);
    QCOMPARE(settings.getComPort(), 3);
}

void SettingsTest::severalObjectsInOneFile()
{
    TarveloSettings first;
    first.setAutoSave(false);
    first.setComPort(11);
    ExampleSettings second;
    second.setCounter(12);
    const QString path = m_dir.filePath(QStringLiteral("components.xml"));
    QVERIFY(NTSettings::saveListFromString({&first, &second}, path));
    QVERIFY(!NTSettings::saveListFromString({&first}, path + QStringLiteral("/child.xml")));

    TarveloSettings firstRead;
    firstRead.setAutoSave(false);
    ExampleSettings secondRead;
    QXmlStreamReader reader(TestFiles::read(path));
    QVERIFY(reader.readNextStartElement()); // the root, "Component"
    while (reader.readNextStartElement()) {
        NTSettings &target = reader.name() == QLatin1String("TarveloSettings")
            ? static_cast<NTSettings &>(firstRead)
            : secondRead;
        target.metaDescriptor()->loadXmlContent(reader.name().toString(), reader);
    }
    // Each object stops at its own end: the second one's values don't leak into the first.
    QCOMPARE(firstRead.saveToString(), first.saveToString());
    QCOMPARE(secondRead.getCounter(), 12);
}

void SettingsTest::toogleItemInStringList_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<bool>("add");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("add new") << QStringList {"a"} << true << true << QStringList {"a", "b"};
    QTest::newRow("add present") << QStringList {"b"} << true << false << QStringList {"b"};
    QTest::newRow("remove every copy")
        << QStringList {"b", "a", "b"} << false << true << QStringList {"a"};
    QTest::newRow("case counts") << QStringList {"B"} << false << false << QStringList {"B"};
}

void SettingsTest::toogleItemInStringList()
{
    QFETCH(QStringList, list);
    QFETCH(bool, add);
    QFETCH(bool, changed);
    QFETCH(QStringList, after);
    QCOMPARE(NTSettings::toogleItemInStringList(list, QStringLiteral("b"), add), changed);
    QCOMPARE(list, after);
}

void SettingsTest::fullName_data()
{
    QTest::addColumn<QStringList>("parts"); // last, first, middle name and GUID
    QTest::addColumn<QString>("without");
    QTest::addColumn<QString>("with");
    QTest::newRow("all parts") << QStringList {"Иванов", "Иван", "Иванович", "abc"}
                               << "Иванов Иван Иванович"
                               << "Иванов Иван Иванович (abc)";
    QTest::newRow("blank parts skipped, inner blanks kept")
        << QStringList {"Ван  дер", " ", "\t", ""} << "Ван  дер"
        << "Ван  дер";
    QTest::newRow("only the GUID") << QStringList {"", "", "", " abc "} << ""
                                   << "(abc)";
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

void SettingsTest::subjectCopyKeepsToTheLimitsAndAnnouncesChanges()
{
    TarveloUser source;
    source.setLastName(QStringLiteral("Иванов"));
    source.setDOBDay(40);
    source.setDOBMonth(-3);
    source.setDOBYear(9999);
    TarveloUser copy;
    copy.setLastName(QStringLiteral("Иванов")); // already equal: not announced
    QSignalSpy changed(&copy, &NTSettings::propertyChanged);
    copy.copyFrom(&source);
    QStringList order;
    for (const QList<QVariant> &call : qAsConst(changed))
        order << call.at(0).toString();
    QCOMPARE(order, (QStringList {"DOBDay", "DOBYear"}));
    QCOMPARE(copy.getDOBDay(), 31);
    QCOMPARE(copy.getDOBMonth(), 0);
    QCOMPARE(copy.getDOBYear(), 5432);
    copy.copyFrom(nullptr);
    QCOMPARE(changed.count(), 2);
}

void SettingsTest::subjectIsFiledUnderItsNameAndGuid()
{
    TarveloUser user;
    user.setLastName(QStringLiteral("Петрова"));
    user.createGuid();
    QVERIFY(QRegularExpression(QStringLiteral("^[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$"))
                .match(user.getGUID())
                .hasMatch());
    user.saveIn(m_dir.path() + QStringLiteral("\\Records\\")); // separators of either kind
    QCOMPARE(user.getFilepath(),
             m_dir.filePath("Records/Петрова (" + user.getGUID() + ")/User.xml"));
    QVERIFY(QFile::exists(user.getFilepath()));

    // A name longer than any the file system takes leaves no file and no folder.
    TarveloUser refused;
    refused.setLastName(QString(300, QChar(0x0416)));
    refused.saveIn(m_dir.filePath(QStringLiteral("Records")));
    QVERIFY(!QFile::exists(refused.getFilepath()));
    QCOMPARE(QDir(m_dir.filePath(QStringLiteral("Records"))).count(), 3u);

    // A file broken by a control character reads as an empty subject.
    QVERIFY(TestFiles::write(m_path,
                             "<TarveloUser><LastName>Иванов\x01</LastName>"
                             "<GUID>g</GUID></TarveloUser>"));
    TarveloUser broken;
    broken.setFilepath(m_path);
    QVERIFY(broken.reload());
    QVERIFY(broken.fullName(true).isEmpty());
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
