#include "ExampleSettings.h"
#include "data/TarveloSettings.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <csignal>
#include <limits>
#include <sys/resource.h>

namespace {

const char *const exampleXml = R"(<?xml version="1.0"?>
<ExampleSettings>
    <Origin>-3;14</Origin>
    <Anchor>0.1;2.12346</Anchor>
    <Frame>800;600</Frame>
    <Blob>AAH/aGVsbG8=</Blob>
    <Labels>
        <alpha>A &amp; B</alpha>
        <beta></beta>
    </Labels>
    <Tint>#123456</Tint>
    <Stamp>&lt;x&gt; &quot;quoted&quot;</Stamp>
    <Level>7</Level>
    <Counter>9</Counter>
</ExampleSettings>
)";

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
    settings.setScratch(QStringLiteral("never stored either"));
}

} // namespace

class NTSettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    // The XML form.
    void xmlFormHoldsEveryTypeAndReadsBack();
    void propertiesWithoutEditableAreNeitherWrittenNorRead();
    void readerTakesKnownElementsWherever_data();
    void readerTakesKnownElementsWherever();
    void unreadableValuesLeaveThePropertyAsItWas_data();
    void unreadableValuesLeaveThePropertyAsItWas();
    void pointWithOnePartBecomesZero();
    void coordinatesBeyondIntStickToItsEnds_data();
    void coordinatesBeyondIntStickToItsEnds();
    void typedCoordinatesBeyondIntStickToItsEnds();

    // The object and its file.
    void reloadWithoutPathDoesNothing();
    void reloadOfAMissingFileKeepsTheDefaults();
    void reloadWritesNothing();
    void autosaveWritesOncePerChange();
    void changeWithoutPathWritesNothing();
    void loadersOtherThanReloadSaveEachChange();
    void setFilepathCreatesTheFolder();
    void unwritableFileKeepsTheOldOneWhole();

    // Damaged and hostile files.
    void truncatedFileKeepsWhatStoodBeforeTheCut();
    void hostileXmlLeavesDefaults_data();
    void hostileXmlLeavesDefaults();
    void deeplyNestedElementIsStillFound();
    void hugeTextLoads();

    // JSON form.
    void jsonFormIsCompactAndReadsBack();
    void brokenJsonIsRefusedWithItsDebugLine_data();
    void brokenJsonIsRefusedWithItsDebugLine();
    void jsonFileRoundTrip();
    void byteNumberGoesToJsonAsANumber();

    // Several objects in one file.
    void severalObjectsInOneFile();

    // Access by name.
    void accessByName();
    void toogleItemInStringList_data();
    void toogleItemInStringList();

private:
    QTemporaryDir m_dir;
    QString m_path;
};

void NTSettingsTest::init()
{
    QVERIFY(m_dir.isValid());
    m_path = m_dir.filePath(QStringLiteral("Settings.xml"));
    QFile::remove(m_path);
}

void NTSettingsTest::xmlFormHoldsEveryTypeAndReadsBack()
{
    ExampleSettings written;
    fillExample(written);
    QCOMPARE(written.saveToString(), QString::fromUtf8(exampleXml));

    ExampleSettings read;
    QSignalSpy reloaded(&read, &NTSettings::reloaded);
    QVERIFY(read.loadFromXMLString(written.saveToString()));
    QCOMPARE(reloaded.count(), 1);
    QCOMPARE(read.getOrigin(), QPoint(-3, 14));
    QCOMPARE(read.getAnchor(), QPointF(0.1, 2.12346));
    QCOMPARE(read.getFrame(), QSize(800, 600));
    QCOMPARE(read.getBlob(), QByteArray("\x00\x01\xffhello", 8));
    QCOMPARE(read.getLabels(), (StringMap {{"alpha", "A & B"}, {"beta", ""}}));
    QCOMPARE(read.getTint(), QColor(0x12, 0x34, 0x56));
    QCOMPARE(read.getStamp(), QStringLiteral("<x> \"quoted\""));
    QCOMPARE(read.getLevel(), uchar(7));
    QCOMPARE(read.getCounter(), 9);
}

void NTSettingsTest::propertiesWithoutEditableAreNeitherWrittenNorRead()
{
    ExampleSettings settings;
    settings.loadFromXMLString(QStringLiteral(
        "<ExampleSettings><Draft>from file</Draft><Scratch>from file</Scratch></ExampleSettings>"));
    QCOMPARE(settings.getDraft(), QStringLiteral("draft"));
    QVERIFY(settings.getScratch().isEmpty());
    QVERIFY(!settings.saveToString().contains(QStringLiteral("Draft")));
    QVERIFY(!settings.saveToString().contains(QStringLiteral("Scratch")));
    QVERIFY(!settings.saveToString().contains(QStringLiteral("objectName")));
}

void NTSettingsTest::readerTakesKnownElementsWherever_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("comPort");
    QTest::addColumn<bool>("autoSearch");
    QTest::newRow("other order")
        << "<TarveloSettings><AutoSearch>false</AutoSearch><ComPort>7</ComPort></TarveloSettings>"
        << 7 << false;
    QTest::newRow("unknown elements") << "<TarveloSettings><Colour>red</Colour><ComPort>7</ComPort>"
                                         "<Other><Deep/></Other></TarveloSettings>"
                                      << 7 << true;
    QTest::newRow("another root") << "<Whatever><ComPort>8</ComPort></Whatever>" << 8 << true;
    QTest::newRow("nested in unknown")
        << "<TarveloSettings><Group><Inner><ComPort>9</ComPort></Inner></Group>"
           "<AutoSearch>false</AutoSearch></TarveloSettings>"
        << 9 << false;
    QTest::newRow("name compared exactly")
        << "<TarveloSettings><comport>9</comport><AUTOSEARCH>false</AUTOSEARCH></TarveloSettings>"
        << 1 << true;
    QTest::newRow("stray child inside a value is skipped")
        << "<TarveloSettings><ComPort>4<b>x</b></ComPort><AutoSearch>false</AutoSearch>"
           "</TarveloSettings>"
        << 4 << false;
    QTest::newRow("last one wins")
        << "<TarveloSettings><ComPort>4</ComPort><ComPort>5</ComPort></TarveloSettings>" << 5
        << true;
    QTest::newRow("empty text") << "" << 1 << true;
}

void NTSettingsTest::readerTakesKnownElementsWherever()
{
    QFETCH(QString, xml);
    QFETCH(int, comPort);
    QFETCH(bool, autoSearch);
    TarveloSettings settings;
    settings.setAutoSave(false);
    QVERIFY(settings.loadFromXMLString(xml));
    QCOMPARE(settings.getComPort(), comPort);
    QCOMPARE(settings.getAutoSearch(), autoSearch);
}

void NTSettingsTest::unreadableValuesLeaveThePropertyAsItWas_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("expected");
    QTest::newRow("unknown enumeration key") << "<ExportBehavior>OnExport_Explode</ExportBehavior>"
                                             << "ExportBehavior"
                                             << "OnExport_OpenFolder";
    QTest::newRow("enumeration by number") << "<ExportBehavior>2</ExportBehavior>"
                                           << "ExportBehavior"
                                           << "OnExport_OpenFolder";
    QTest::newRow("text for a number") << "<ComPort>three</ComPort>"
                                       << "ComPort"
                                       << "3";
    QTest::newRow("fraction for a number") << "<ComPort>2.5</ComPort>"
                                           << "ComPort"
                                           << "3";
    QTest::newRow("outside the limits is taken") << "<ComPort>500</ComPort>"
                                                 << "ComPort"
                                                 << "500";
    QTest::newRow("negative is taken") << "<maxRepeats>-4</maxRepeats>"
                                       << "maxRepeats"
                                       << "-4";
    QTest::newRow("known key") << "<ExportBehavior>OnExport_DoNothing</ExportBehavior>"
                               << "ExportBehavior"
                               << "OnExport_DoNothing";
}

void NTSettingsTest::unreadableValuesLeaveThePropertyAsItWas()
{
    QFETCH(QString, element);
    QFETCH(QString, property);
    QFETCH(QString, expected);
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setExportBehavior(TarveloSettings::OnExport_OpenFolder);
    settings.setComPort(3);
    settings.loadFromXMLString(QStringLiteral("<TarveloSettings>") + element
                               + QStringLiteral("</TarveloSettings>"));
    QCOMPARE(settings.getTextValue(property), expected);
}

void NTSettingsTest::pointWithOnePartBecomesZero()
{
    ExampleSettings settings;
    settings.loadFromXMLString(
        QStringLiteral("<x><Origin>12</Origin><Frame>7;x</Frame><Anchor>1.9;2.5;9</Anchor></x>"));
    QCOMPARE(settings.getOrigin(), QPoint(0, 0));
    QCOMPARE(settings.getFrame(), QSize(7, 0));
    QCOMPARE(settings.getAnchor(), QPointF(1.9, 2.5));
    settings.loadFromXMLString(QStringLiteral("<x><Origin>1.9;-2.7</Origin></x>"));
    QCOMPARE(settings.getOrigin(), QPoint(1, -2)); // cut toward zero
}

void NTSettingsTest::coordinatesBeyondIntStickToItsEnds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QPoint>("origin");
    QTest::addColumn<QSize>("frame");
    const int max = std::numeric_limits<int>::max();
    const int min = std::numeric_limits<int>::min();
    QTest::newRow("far out") << "1e300;-1e300" << QPoint(max, min) << QSize(max, min);
    QTest::newRow("just beyond") << "2147483648;-2147483649" << QPoint(max, min) << QSize(max, min);
    QTest::newRow("the ends themselves")
        << "2147483647;-2147483648" << QPoint(max, min) << QSize(max, min);
    QTest::newRow("infinite") << "inf;-inf" << QPoint(max, min) << QSize(max, min);
    QTest::newRow("not a number") << "nan;5.9" << QPoint(0, 5) << QSize(0, 5);
}

// Found by fuzzing: casting such a double to int is undefined behaviour.
void NTSettingsTest::coordinatesBeyondIntStickToItsEnds()
{
    QFETCH(QString, text);
    QFETCH(QPoint, origin);
    QFETCH(QSize, frame);
    ExampleSettings settings;
    settings.loadFromXMLString(
        QStringLiteral("<x><Origin>%1</Origin><Frame>%1</Frame></x>").arg(text));
    QCOMPARE(settings.getOrigin(), origin);
    QCOMPARE(settings.getFrame(), frame);
}

// The text form that declarations and the edit form use goes the same way.
void NTSettingsTest::typedCoordinatesBeyondIntStickToItsEnds()
{
    ExampleSettings settings;
    QVERIFY(
        settings.setTextValue(QStringLiteral("Origin"), QStringLiteral("QPoint(1e300, -1e12)")));
    QCOMPARE(settings.getOrigin(),
             QPoint(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()));
    QVERIFY(settings.setTextValue(QStringLiteral("Frame"), QStringLiteral("nan, 3e9")));
    QCOMPARE(settings.getFrame(), QSize(0, std::numeric_limits<int>::max()));
}

void NTSettingsTest::reloadWithoutPathDoesNothing()
{
    ExampleSettings settings;
    QSignalSpy reloaded(&settings, &NTSettings::reloaded);
    QVERIFY(!settings.reload());
    QCOMPARE(reloaded.count(), 0);
}

void NTSettingsTest::reloadOfAMissingFileKeepsTheDefaults()
{
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QSignalSpy reloaded(&settings, &NTSettings::reloaded);
    QSignalSpy saved(&settings, &NTSettings::saved);
    QVERIFY(settings.reload());
    QCOMPARE(reloaded.count(), 1);
    QCOMPARE(saved.count(), 0);
    QCOMPARE(settings.saveToString(), TarveloSettings().saveToString());
    QVERIFY(!QFile::exists(m_path));
}

void NTSettingsTest::reloadWritesNothing()
{
    QVERIFY(TestFiles::write(
        m_path, "<TarveloSettings><ComPort>12</ComPort><stop>9</stop></TarveloSettings>"));
    const QDateTime before = QFileInfo(m_path).lastModified();
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QSignalSpy saved(&settings, &NTSettings::saved);
    QSignalSpy changed(&settings, &TarveloSettings::changedComPort);
    QSignalSpy propertyChanged(&settings, &NTSettings::propertyChanged);
    QVERIFY(settings.reload());
    QCOMPARE(settings.getComPort(), 12);
    QCOMPARE(settings.getstop(), QStringLiteral("9"));
    // The setters run and announce the change, but the file isn't written back.
    QCOMPARE(changed.count(), 1);
    QCOMPARE(propertyChanged.count(), 2);
    QCOMPARE(saved.count(), 0);
    QCOMPARE(QFileInfo(m_path).lastModified(), before);
    QCOMPARE(TestFiles::read(m_path),
             QByteArray("<TarveloSettings><ComPort>12</ComPort><stop>9</stop></TarveloSettings>"));
}

void NTSettingsTest::autosaveWritesOncePerChange()
{
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QSignalSpy saved(&settings, &NTSettings::saved);
    QSignalSpy propertyChanged(&settings, &NTSettings::propertyChanged);

    settings.setComPort(1); // the value it has: no change, no write
    QCOMPARE(saved.count(), 0);
    QVERIFY(!QFile::exists(m_path));

    settings.setComPort(4);
    QCOMPARE(saved.count(), 1);
    QCOMPARE(propertyChanged.takeFirst().at(0).toString(), QStringLiteral("ComPort"));
    QVERIFY(TestFiles::read(m_path).contains("<ComPort>4</ComPort>"));

    // Every write is the whole file, fresh: remove it and the next change brings it back.
    QFile::remove(m_path);
    settings.setsp2(QStringLiteral(""));
    QCOMPARE(saved.count(), 2);
    QVERIFY(TestFiles::read(m_path).contains("<sp2></sp2>"));
    QVERIFY(TestFiles::read(m_path).contains("<ComPort>4</ComPort>"));

    settings.resetComPort();
    QCOMPARE(saved.count(), 3);
    QVERIFY(TestFiles::read(m_path).contains("<ComPort>1</ComPort>"));

    settings.setAutoSave(false);
    settings.setComPort(5);
    QCOMPARE(saved.count(), 3);
    QCOMPARE(propertyChanged.count(), 3); // still announced
    QVERIFY(TestFiles::read(m_path).contains("<ComPort>1</ComPort>"));
}

void NTSettingsTest::changeWithoutPathWritesNothing()
{
    QDir::setCurrent(m_dir.path());
    ExampleSettings settings;
    QSignalSpy saved(&settings, &NTSettings::saved);
    settings.setCounter(11);
    QCOMPARE(saved.count(), 1); // saved is reported all the same
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void NTSettingsTest::loadersOtherThanReloadSaveEachChange()
{
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QSignalSpy saved(&settings, &NTSettings::saved);
    settings.loadFromXMLString(QStringLiteral(
        "<TarveloSettings><ComPort>2</ComPort><sm1>7</sm1><s0>2</s0></TarveloSettings>"));
    QCOMPARE(saved.count(), 2); // s0 was 2 already
    settings.loadDefaults();
    QCOMPARE(saved.count(), 4);
    QCOMPARE(settings.getComPort(), 1);
    QCOMPARE(settings.getsm1(), QStringLiteral("3"));
    QVERIFY(settings.loadFromJson(QByteArray(R"({"maxRepeats": 6, "Unknown": 1})")));
    QCOMPARE(saved.count(), 5);
    QCOMPARE(settings.getmaxRepeats(), 6);
}

void NTSettingsTest::setFilepathCreatesTheFolder()
{
    ExampleSettings settings;
    QSignalSpy changed(&settings, &NTSettings::filePathChanged);
    const QString path = m_dir.filePath(QStringLiteral("a/b/c/Example.xml"));
    settings.setFilepath(path);
    QVERIFY(QFileInfo(m_dir.filePath(QStringLiteral("a/b/c"))).isDir());
    QCOMPARE(settings.getFilepath(), path);
    settings.setFilepath(QString()); // not taken, but reported
    QCOMPARE(settings.getFilepath(), path);
    QCOMPARE(changed.count(), 2);

    ExampleSettings constructed(m_dir.filePath(QStringLiteral("d/Example.xml")));
    QVERIFY(QFileInfo(m_dir.filePath(QStringLiteral("d"))).isDir());
}

// The file size limit of the process makes the next write fail half-way, as a full disk would.
void NTSettingsTest::unwritableFileKeepsTheOldOneWhole()
{
    TarveloSettings settings;
    settings.setFilepath(m_path);
    settings.setLastScriptTitle(QStringLiteral("Проба"));
    const QByteArray before = TestFiles::read(m_path);
    QVERIFY(before.contains("Проба"));

    rlimit original {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &original), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = original;
    small.rlim_cur = rlim_t(before.size() + 16);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    settings.setLastScriptTitle(QString(4000, QLatin1Char('x')));
    setrlimit(RLIMIT_FSIZE, &original);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(TestFiles::read(m_path), before);
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList {QStringLiteral("Settings.xml")});
    TarveloSettings again;
    again.setFilepath(m_path);
    again.reload();
    QCOMPARE(again.getLastScriptTitle(), QStringLiteral("Проба"));
}

void NTSettingsTest::truncatedFileKeepsWhatStoodBeforeTheCut()
{
    QFile golden(QStringLiteral(TARVELO_TEST_DATA "/Settings.xml"));
    QVERIFY(golden.open(QIODevice::ReadOnly));
    const QByteArray full = golden.readAll();
    // Cut inside the value of DeviceSearchTimeout, after the ComPort line.
    const int cut =
        full.indexOf("<DeviceSearchTimeout>") + int(qstrlen("<DeviceSearchTimeout>")) + 1;
    QByteArray damaged = full.left(cut);
    damaged.replace("<ComPort>1</ComPort>", "<ComPort>6</ComPort>");
    damaged.replace("<DeviceSearchTimeout>5", "<DeviceSearchTimeout>25");
    QVERIFY(TestFiles::write(m_path, damaged));

    TarveloSettings settings;
    settings.setFilepath(m_path);
    QVERIFY(settings.reload());
    QCOMPARE(settings.getLastScriptTitle(), QStringLiteral("Проба"));
    QCOMPARE(settings.getComPort(), 6);
    QCOMPARE(settings.getDeviceSearchTimeout(), 5); // the cut-off "2" is no value
    QCOMPARE(settings.getDefaultToneHi(), 1000);
    QCOMPARE(TestFiles::read(m_path), damaged); // and the damaged file isn't touched by reading
}

void NTSettingsTest::hostileXmlLeavesDefaults_data()
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
    QTest::newRow("not XML at all") << QByteArray("ComPort=7\nAutoSearch=false\n");
    QTest::newRow("JSON in an XML file") << QByteArray(R"({"ComPort": 7})");
    QTest::newRow("unclosed value") << QByteArray("<TarveloSettings><ComPort>7");
    QTest::newRow("mismatched tags") << QByteArray("<a><ComPort>7</b></a>");
    QTest::newRow("entity expansion") << QByteArray(R"(<?xml version="1.0"?>
<!DOCTYPE lolz [
 <!ENTITY lol "lollollollollollollollollollol">
 <!ENTITY lol1 "&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;">
 <!ENTITY lol2 "&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;">
 <!ENTITY lol3 "&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;">
 <!ENTITY lol4 "&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;">
 <!ENTITY lol5 "&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;">
 <!ENTITY lol6 "&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;">
 <!ENTITY lol7 "&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;">
 <!ENTITY lol8 "&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;">
 <!ENTITY lol9 "&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;">
]>
<TarveloSettings><LastScriptTitle>&lol9;</LastScriptTitle><ComPort>7</ComPort></TarveloSettings>)");
    QTest::newRow("external entity") << QByteArray(R"(<?xml version="1.0"?>
<!DOCTYPE x [ <!ENTITY secret SYSTEM "file:///etc/passwd"> ]>
<TarveloSettings><LastScriptTitle>&secret;</LastScriptTitle></TarveloSettings>)");
}

void NTSettingsTest::hostileXmlLeavesDefaults()
{
    QFETCH(QByteArray, content);
    QVERIFY(TestFiles::write(m_path, content));
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QSignalSpy saved(&settings, &NTSettings::saved);
    QVERIFY(settings.reload());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(settings.getComPort(), 1);
    QCOMPARE(settings.getAutoSearch(), true);
    QVERIFY(settings.getLastScriptTitle().size() < 1000);
    QVERIFY(!settings.getLastScriptTitle().contains(QStringLiteral("root:")));
}

void NTSettingsTest::deeplyNestedElementIsStillFound()
{
    const int depth = 100000;
    QByteArray xml = "<TarveloSettings>";
    for (int i = 0; i < depth; ++i)
        xml += "<n>";
    xml += "<ComPort>42</ComPort>";
    for (int i = 0; i < depth; ++i)
        xml += "</n>";
    xml += "<stop>8</stop></TarveloSettings>";
    QVERIFY(TestFiles::write(m_path, xml));
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QVERIFY(settings.reload());
    QCOMPARE(settings.getComPort(), 42);
    QCOMPARE(settings.getstop(), QStringLiteral("8"));

    // Deep nesting inside a value is skipped, not followed.
    QByteArray inside = "<TarveloSettings><sm1>1";
    for (int i = 0; i < depth; ++i)
        inside += "<n>";
    for (int i = 0; i < depth; ++i)
        inside += "</n>";
    inside += "</sm1><sm2>9</sm2></TarveloSettings>";
    settings.loadFromXMLString(QString::fromLatin1(inside));
    QCOMPARE(settings.getsm1(), QStringLiteral("1"));
    QCOMPARE(settings.getsm2(), QStringLiteral("9"));
}

void NTSettingsTest::hugeTextLoads()
{
    const QByteArray huge(16 * 1024 * 1024, 'a');
    QVERIFY(TestFiles::write(m_path,
                             "<TarveloSettings><LastExportFolder>" + huge
                                 + "</LastExportFolder><ComPort>3</ComPort></TarveloSettings>"));
    TarveloSettings settings;
    settings.setFilepath(m_path);
    QVERIFY(settings.reload());
    QCOMPARE(settings.getLastExportFolder().size(), huge.size());
    QCOMPARE(settings.getComPort(), 3);
}

void NTSettingsTest::jsonFormIsCompactAndReadsBack()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(7);
    settings.setExportBehavior(TarveloSettings::OnExport_DoNothing);
    settings.setLastScriptTitle(QStringLiteral("Проба"));
    const QString json = settings.saveToJsonByteArray();
    QVERIFY(!json.contains(QLatin1Char('\n')));
    QVERIFY(!json.contains(QStringLiteral(": ")));
    // Keys come sorted, enumerations by key.
    QVERIFY(json.startsWith(QStringLiteral(R"({"AutoSearch":true,"ComPort":7,)")));
    QVERIFY(json.contains(QStringLiteral(R"("ExportBehavior":"OnExport_DoNothing")")));
    QVERIFY(settings.saveToJsonString(QJsonDocument::Indented).contains(QLatin1Char('\n')));

    TarveloSettings read;
    read.setAutoSave(false);
    QSignalSpy reloaded(&read, &NTSettings::reloaded);
    QVERIFY(read.loadFromJson(json));
    QCOMPARE(reloaded.count(), 1);
    QCOMPARE(read.saveToString(), settings.saveToString());
    QCOMPARE(read.getQVariantMap(), settings.getQVariantMap());

    // Keys of unknown properties are passed over; absent keys leave the property as it is.
    QVERIFY(read.loadFromJson(QJsonDocument::fromJson(R"({"Nope": 1, "sp1": "4"})")));
    QCOMPARE(read.getsp1(), QStringLiteral("4"));
    QCOMPARE(read.getComPort(), 7);
}

void NTSettingsTest::brokenJsonIsRefusedWithItsDebugLine_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("debugLine");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("truncated") << QByteArray(R"({"ComPort": 7, "AutoSe)")
                               << "Failed to create JSON doc. loadFromJson";
    QTest::newRow("garbage") << QByteArray("\x01\xfe\xff\x00zz", 6)
                             << "Failed to create JSON doc. loadFromJson";
    QTest::newRow("array") << QByteArray(R"([{"ComPort": 7}])")
                           << "JSON is not an object. loadFromJson";
    QTest::newRow("empty object") << QByteArray("{}") << "JSON object is empty loadFromJson";
    QTest::newRow("deeply nested") << QByteArray(100000, '[') + QByteArray(100000, ']')
                                   << "Failed to create JSON doc. loadFromJson";
}

void NTSettingsTest::brokenJsonIsRefusedWithItsDebugLine()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, debugLine);
    if (!debugLine.isEmpty())
        QTest::ignoreMessage(QtDebugMsg, debugLine.toUtf8().constData());
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(3);
    QSignalSpy reloaded(&settings, &NTSettings::reloaded);
    QVERIFY(!settings.loadFromJson(json));
    QCOMPARE(reloaded.count(), 0);
    QCOMPARE(settings.getComPort(), 3);
}

void NTSettingsTest::jsonFileRoundTrip()
{
    const QString path = m_dir.filePath(QStringLiteral("settings.json"));
    QFile::remove(path);
    {
        TarveloSettings settings;
        settings.setFormat(NTSettings::JSON);
        settings.setFilepath(path);
        settings.setDefaultToneLo(250);
    }
    QVERIFY(TestFiles::read(path).startsWith("{\"AutoSearch\":true,"));

    TarveloSettings settings;
    settings.setFormat(NTSettings::JSON);
    settings.setFilepath(path);
    QVERIFY(settings.reload());
    QCOMPARE(settings.getDefaultToneLo(), 250);

    // A broken JSON file leaves the values as they were.
    QVERIFY(TestFiles::write(path, "{\"DefaultToneLo\": 3"));
    QTest::ignoreMessage(QtDebugMsg, "Failed to create JSON doc. loadFromJson");
    QVERIFY(settings.reload());
    QCOMPARE(settings.getDefaultToneLo(), 250);
}

// Found by fuzzing: a uchar went out as a one-character string, which reads back as nothing.
void NTSettingsTest::byteNumberGoesToJsonAsANumber()
{
    ExampleSettings settings;
    settings.setLevel(255);
    const QJsonObject json = settings.saveToJson();
    QCOMPARE(json.value(QStringLiteral("Level")), QJsonValue(255));

    ExampleSettings read;
    QVERIFY(read.loadFromJson(json));
    QCOMPARE(read.getLevel(), uchar(255));
    QCOMPARE(read.saveToJson(), json);
}

void NTSettingsTest::severalObjectsInOneFile()
{
    TarveloSettings first;
    first.setAutoSave(false);
    first.setComPort(11);
    ExampleSettings second;
    second.setCounter(12);
    second.setLabels({{"k", "v"}});
    const QString path = m_dir.filePath(QStringLiteral("components.xml"));
    QVERIFY(NTSettings::saveListFromString({&first, &second}, path));
    // Beneath a file no file can be written.
    QVERIFY(!NTSettings::saveListFromString({&first}, path + QStringLiteral("/child.xml")));

    const QByteArray text = TestFiles::read(path);
    QVERIFY(text.startsWith("<?xml version=\"1.0\"?>\n<Component>\n    <TarveloSettings>\n"));
    QVERIFY(text.contains("        <ComPort>11</ComPort>\n"));
    QVERIFY(text.contains("            <k>v</k>\n"));

    TarveloSettings firstRead;
    firstRead.setAutoSave(false);
    ExampleSettings secondRead;
    QXmlStreamReader reader(text);
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("TarveloSettings"))
            firstRead.metaDescriptor()->loadXmlContent(QStringLiteral("TarveloSettings"), reader);
        else if (reader.name() == QLatin1String("ExampleSettings"))
            secondRead.metaDescriptor()->loadXmlContent(QStringLiteral("ExampleSettings"), reader);
    }
    QCOMPARE(firstRead.getComPort(), 11);
    QCOMPARE(secondRead.getCounter(), 12);
    QCOMPARE(secondRead.getLabels(), (StringMap {{"k", "v"}}));
    // Each object stops at its own end: the second one's values don't leak into the first.
    QCOMPARE(firstRead.saveToString(), first.saveToString());
}

void NTSettingsTest::accessByName()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    QVERIFY(settings.containsProperty(QStringLiteral("ComPort")));
    QVERIFY(!settings.containsProperty(QStringLiteral("comport")));
    QVERIFY(!settings.containsProperty(QStringLiteral("objectName")));
    QVERIFY(settings.getPropertyByName(QStringLiteral("COMPORT")));
    QVERIFY(!settings.getPropertyByName(QStringLiteral("Nothing")));

    QVERIFY(settings.setValue(QStringLiteral("comPORT"), 9));
    QCOMPARE(settings.getComPort(), 9);
    QCOMPARE(settings.getValue(QStringLiteral("ComPort")).toInt(), 9);
    QVERIFY(!settings.getValue(QStringLiteral("comport")).isValid());
    QVERIFY(!settings.setValue(QStringLiteral("Nothing"), 1));

    QVERIFY(settings.setTextValue(QStringLiteral("autosearch"), QStringLiteral("false")));
    QCOMPARE(settings.getTextValue(QStringLiteral("AutoSearch")), QStringLiteral("false"));
    QVERIFY(settings.setTextValue(QStringLiteral("ExportBehavior"),
                                  QStringLiteral("OnExport_OpenFolder")));
    QCOMPARE(settings.getExportBehavior(), TarveloSettings::OnExport_OpenFolder);
    QVERIFY(!settings.setTextValue(QStringLiteral("ExportBehavior"), QStringLiteral("Nope")));
    QVERIFY(settings.getTextValue(QStringLiteral("Nothing")).isEmpty());

    settings.loadFromQVariantMap(
        {{QStringLiteral("DefaultToneHi"), 1500}, {QStringLiteral("Unknown"), 1}});
    QCOMPARE(settings.getDefaultToneHi(), 1500);

    ExampleSettings example;
    QVERIFY(example.setTextValue(QStringLiteral("origin"), QStringLiteral("QPoint(5, 6)")));
    QCOMPARE(example.getOrigin(), QPoint(5, 6));
}

void NTSettingsTest::toogleItemInStringList_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<bool>("add");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("add new") << QStringList {"a"} << true << true << QStringList {"a", "b"};
    QTest::newRow("add present") << QStringList {"a", "b"} << true << false
                                 << QStringList {"a", "b"};
    QTest::newRow("remove every copy")
        << QStringList {"b", "a", "b"} << false << true << QStringList {"a"};
    QTest::newRow("remove absent") << QStringList {"a"} << false << false << QStringList {"a"};
    QTest::newRow("case counts") << QStringList {"B"} << false << false << QStringList {"B"};
}

void NTSettingsTest::toogleItemInStringList()
{
    QFETCH(QStringList, list);
    QFETCH(bool, add);
    QFETCH(bool, changed);
    QFETCH(QStringList, after);
    QCOMPARE(NTSettings::toogleItemInStringList(list, QStringLiteral("b"), add), changed);
    QCOMPARE(list, after);
}

QTEST_GUILESS_MAIN(NTSettingsTest)
#include "tst_ntsettings.moc"
