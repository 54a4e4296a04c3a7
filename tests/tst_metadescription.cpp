#include "ExampleSettings.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/MetaDescription.h"
#include "foundation/MetaDescriptor.h"
#include "foundation/PropertyCapabilities.h"

#include <QColor>
#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

// Declarations at the edges of the key language.
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
    Q_CLASSINFO("QuotedIcon", ":/icons/q.svg")
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
    Q_CLASSINFO("CountMaximum", "")
    Q_CLASSINFO("CountCategory", "Numbers")
    Q_CLASSINFO("CountVisibleBinded", "Flag")

    Q_PROPERTY(QColor Hex MEMBER m_hex)
    Q_CLASSINFO("HexDefault", "QColor(\"#12AB34\")")
    Q_PROPERTY(QColor Named MEMBER m_named)
    Q_CLASSINFO("NamedDefault", "QColor(\"blue\")")

    Q_PROPERTY(QDate Day MEMBER m_day)
    Q_CLASSINFO("DayDefault", "QDate()")
    Q_PROPERTY(QDateTime Now MEMBER m_now)
    Q_CLASSINFO("NowDefault", "QDateTime::currentDateTime()")
    Q_PROPERTY(QString Called MEMBER m_called)
    Q_CLASSINFO("CalledDefault", "noSuchMethod()")

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
    QColor m_hex;
    QColor m_named;
    QDate m_day;
    QDateTime m_now;
    QString m_called;
};

// Translates a few texts, as an installed translation file would.
class FakeTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        const QString key =
            QString::fromLatin1(context) + QLatin1Char('|') + QString::fromUtf8(source);
        static const QMap<QString, QString> texts = {
            {"Generic|ComPort", "COM-порт"},
            {"Generic|Common", "Общее"},
            {"Generic| Hz", " Гц"},
            {"Generic|What it is", "Что это"},
            {"ExportBehaviorOption|OnExport_OpenFile", "Открыть файл"},
        };
        return texts.value(key);
    }
};

class MetaDescriptionTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void keyLanguage_data();
    void keyLanguage();
    void limitsConvertOrStayUnset();
    void visibilityRules();
    void textsExtrasAndFlags();
    void unwritableAndObjectNameAreNotDescribed();
    void defaultsComputedAtParse();
    void setDefaultPrefersTheClassOwnReset();
    void setTextValueOfPointsAndSizes_data();
    void setTextValueOfPointsAndSizes();
    void assignDouble_data();
    void assignDouble();
    void descriptionFollowsItsProperty();
    void descriptorLookups();
    void displayOrderAndCategories();
    void capabilitiesOfComPort();
    void capabilitiesOfHiddenAndEnumerations();
    void capabilitiesTranslateWhereTheyDiffer();
    void capabilitiesString();

private:
    AbstractMetaDescription *describe(const QString &name);

    Declarations m_declarations;
    MetaDescriptor m_descriptor;
};

void MetaDescriptionTest::initTestCase()
{
    // A default computed by a method that doesn't exist keeps its text.
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("No such method.*noSuchMethod")));
    m_descriptor.set(&m_declarations);
}

AbstractMetaDescription *MetaDescriptionTest::describe(const QString &name)
{
    AbstractMetaDescription *description = m_descriptor.propertyByName(name);
    if (!description)
        qWarning() << "no description of" << name;
    return description;
}

void MetaDescriptionTest::keyLanguage_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<bool>("editable");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("hasDefault");
    QTest::addColumn<QString>("defaultValue");
    QTest::addColumn<QString>("type");
    QTest::newRow("quoted string loses its quotes")
        << "Quoted" << true << true << true << "Untitled"
        << "QString";
    QTest::newRow("unquoted string as it stands, NotVisible=false hides")
        << "Unquoted" << true << false << true << "plain text"
        << "QString";
    QTest::newRow("enumeration: the key behind the last ::")
        << "Scoped" << true << true << true << "Second"
        << "Enum";
    QTest::newRow("enumeration without :: loses its first character, Editable not exactly true")
        << "Unscoped" << false << true << true << "econd"
        << "Enum";
    QTest::newRow("number loses written letters") << "Ratio" << true << true << true << "2.5"
                                                  << "double";
    QTest::newRow("int without Editable") << "Count" << false << true << true << "12"
                                          << "int";
    QTest::newRow("colour by hexadecimal") << "Hex" << false << true << true << "#12AB34"
                                           << "QColor";
    QTest::newRow("colour by quoted name") << "Named" << false << true << true << "#0000ff"
                                           << "QColor";
    QTest::newRow("null date") << "Day" << false << true << true << ""
                               << "QDate";
    QTest::newRow("failed call keeps the text")
        << "Called" << false << true << true << "noSuchMethod()"
        << "QString";
}

void MetaDescriptionTest::keyLanguage()
{
    QFETCH(QString, property);
    QFETCH(bool, editable);
    QFETCH(bool, visible);
    QFETCH(bool, hasDefault);
    QFETCH(QString, defaultValue);
    QFETCH(QString, type);
    const AbstractMetaDescription *description = describe(property);
    QVERIFY(description);
    QCOMPARE(description->name(), property);
    QCOMPARE(description->editable(), editable);
    QCOMPARE(description->visible(), visible);
    QCOMPARE(description->hasDefault(), hasDefault);
    QCOMPARE(description->defaultValue(), defaultValue);
    QCOMPARE(description->type(), type);
    if (type == QLatin1String("Enum"))
        QCOMPARE(description->typeId(), 2); // QMetaType::Int, what an enumeration is stored as
}

void MetaDescriptionTest::limitsConvertOrStayUnset()
{
    const AbstractMetaDescription *ratio = describe(QStringLiteral("Ratio"));
    QVERIFY(ratio->hasMinimum());
    QCOMPARE(ratio->minimum(), 10.0); // the first number of "QSize(10, 20)"
    QVERIFY(!ratio->hasMaximum());    // "lots" doesn't convert
    QVERIFY(ratio->hasStep());
    QCOMPARE(ratio->step(), 0.25);
    // Declared, but "none" and "" are no numbers.
    const AbstractMetaDescription *count = describe(QStringLiteral("Count"));
    QVERIFY(!count->hasMinimum() && !count->hasMaximum() && !count->hasStep());
}

void MetaDescriptionTest::visibilityRules()
{
    // VisibleBound wins over VisibleBinded; "!X" means X false, a bare name X true, and a
    // value may itself hold a colon.
    const QMap<QString, QString> expected {{"Flag", "false"}, {"Mode", "a:b"}, {"Other", "true"}};
    QCOMPARE(describe(QStringLiteral("Ratio"))->visibleBound(), expected);
    QCOMPARE(describe(QStringLiteral("Count"))->visibleBound(),
             (QMap<QString, QString> {{"Flag", "true"}}));
    QVERIFY(describe(QStringLiteral("Quoted"))->visibleBound().isEmpty());

    TarveloSettings settings;
    QCOMPARE(settings.getPropertyByName(QStringLiteral("ComPort"))->visibleBound(),
             (QMap<QString, QString> {{"AutoSearch", "false"}}));
}

void MetaDescriptionTest::textsExtrasAndFlags()
{
    const AbstractMetaDescription *quoted = describe(QStringLiteral("Quoted"));
    QCOMPARE(quoted->displayName(), QStringLiteral("Zeta"));
    // An empty extra is left out.
    QCOMPARE(
        quoted->extras(),
        (QMap<QString, QString> {{"Description", "What it is"}, {"Placeholder", "type here"}}));
    QCOMPARE(quoted->icon(), QStringLiteral(":/icons/q.svg"));
    QVERIFY(quoted->hasSpecialType());
    QCOMPARE(quoted->specialType(), QStringLiteral("PickFile:*.csv:*.txt"));
    QCOMPARE(quoted->pickOption(), QStringLiteral("PickFile"));
    QCOMPARE(quoted->pickExtensions(), QStringLiteral("*.csv:*.txt"));
    QVERIFY(quoted->showDefault());
    QVERIFY(!quoted->readOnly());
    QCOMPARE(quoted->priority(), 0x7FFFFFFF);

    const AbstractMetaDescription *ratio = describe(QStringLiteral("Ratio"));
    QCOMPARE(ratio->displayName(), QStringLiteral("Ratio"));
    QCOMPARE(ratio->suffix(), QStringLiteral("!-x"));
    QCOMPARE(ratio->prefix(), QStringLiteral("~"));
    QCOMPARE(ratio->category(), QStringLiteral("Numbers"));
    QCOMPARE(ratio->priority(), 0x7FFFFFFF); // "first" is no integer
    QCOMPARE(ratio->pickOption(), QString());
    QVERIFY(!ratio->hasSpecialType());

    // Presence is what counts, whatever the value says.
    const AbstractMetaDescription *scoped = describe(QStringLiteral("Scoped"));
    QVERIFY(scoped->readOnly());
    QVERIFY(!scoped->showDefault());
    QCOMPARE(describe(QStringLiteral("Unquoted"))->priority(), 1);
}

void MetaDescriptionTest::unwritableAndObjectNameAreNotDescribed()
{
    QVERIFY(!m_descriptor.propertyByName(QStringLiteral("Constant")));
    QVERIFY(!m_descriptor.propertyByName(QStringLiteral("objectName")));
    QCOMPARE(m_descriptor.count(), 11);
    QCOMPARE(m_descriptor.at(0)->name(), QStringLiteral("Quoted"));
    QVERIFY(!m_descriptor.at(11));
    QVERIFY(!m_descriptor.at(-1));
    QCOMPARE(m_descriptor.getClassName(), QStringLiteral("Declarations"));
}

void MetaDescriptionTest::defaultsComputedAtParse()
{
    const QString now = describe(QStringLiteral("Now"))->defaultValue();
    const QDateTime parsed = QDateTime::fromString(now, Qt::ISODate);
    QVERIFY2(parsed.isValid(), qPrintable(now));
    QVERIFY(qAbs(parsed.secsTo(QDateTime::currentDateTime())) < 60);

    ExampleSettings example;
    const AbstractMetaDescription *stamp =
        example.metaDescriptor()->propertyByName(QStringLiteral("Stamp"));
    QCOMPARE(stamp->defaultValue(), QStringLiteral("computed"));
    QCOMPARE(example.getStamp(), QStringLiteral("computed"));
    QCOMPARE(example.getTint(), QColor(Qt::red));
    QCOMPARE(example.getOrigin(), QPoint(3, 4));
    QCOMPARE(example.getAnchor(), QPointF(0.5, 1.25));
    QCOMPARE(example.getFrame(), QSize(640, 480));
    QCOMPARE(example.getDraft(), QStringLiteral("draft")); // declared, though not stored
}

void MetaDescriptionTest::setDefaultPrefersTheClassOwnReset()
{
    ExampleSettings example;
    AbstractMetaDescription *counter =
        example.metaDescriptor()->propertyByName(QStringLiteral("Counter"));
    QCOMPARE(example.getCounter(), 7);
    QCOMPARE(counter->defaultValue(), QStringLiteral("7"));

    example.setCounter(2);
    QSignalSpy changed(counter, &AbstractMetaDescription::valueChanged);
    counter->setDefault();
    QCOMPARE(example.getCounter(), 7);
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed.last().at(0).toInt(), 7);

    // A property without a reset of its own takes its declaration.
    AbstractMetaDescription *ratio = describe(QStringLiteral("Ratio"));
    m_declarations.setProperty("Ratio", 9.0);
    ratio->setDefault();
    QCOMPARE(m_declarations.property("Ratio").toDouble(), 2.5);

    // A default that doesn't convert leaves the value: "econd" is no key of Mode.
    AbstractMetaDescription *unscoped = describe(QStringLiteral("Unscoped"));
    m_declarations.setProperty("Unscoped", Declarations::Second);
    unscoped->setDefault();
    QCOMPARE(m_declarations.property("Unscoped").value<Declarations::Mode>(), Declarations::Second);
}

void MetaDescriptionTest::setTextValueOfPointsAndSizes_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("point written as code") << "Origin"
                                           << "QPoint(1, 2)" << true << QVariant(QPoint(1, 2));
    QTest::newRow("point as a pair") << "Origin"
                                     << "-5,6" << true << QVariant(QPoint(-5, 6));
    QTest::newRow("point cut to integers") << "Origin"
                                           << "1.9, 2.9" << true << QVariant(QPoint(1, 2));
    QTest::newRow("point with one number") << "Origin"
                                           << "QPoint(1)" << false << QVariant(QPoint(3, 4));
    QTest::newRow("point of words") << "Origin"
                                    << "a,b" << false << QVariant(QPoint(3, 4));
    QTest::newRow("float point") << "Anchor"
                                 << "QPointF(1.5f, -2.25f)" << true
                                 << QVariant(QPointF(1.5, -2.25));
    QTest::newRow("size") << "Frame"
                          << "QSize(10.7, 20)" << true << QVariant(QSize(10, 20));
    QTest::newRow("colour by name") << "Tint"
                                    << "#00ff00" << true << QVariant(QColor(Qt::green));
}

void MetaDescriptionTest::setTextValueOfPointsAndSizes()
{
    QFETCH(QString, property);
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    QFETCH(QVariant, expected);
    ExampleSettings example;
    AbstractMetaDescription *description = example.metaDescriptor()->propertyByName(property);
    QCOMPARE(description->setTextValue(text), accepted);
    QCOMPARE(description->getValue(), expected);
}

void MetaDescriptionTest::assignDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<double>("value");
    QTest::newRow("plain") << "42" << true << 42.0;
    QTest::newRow("float suffix") << "2.5f" << true << 2.5;
    QTest::newRow("size") << "QSize(10, 20)" << true << 10.0;
    QTest::newRow("point float") << "QPointF(-1.5f, 3)" << true << -1.5;
    QTest::newRow("blanks") << "  7  " << true << 7.0;
    QTest::newRow("word") << "lots" << false << -1.0;
    QTest::newRow("empty") << "" << false << -1.0;
    QTest::newRow("only commas") << ",,," << false << -1.0;
}

void MetaDescriptionTest::assignDouble()
{
    QFETCH(QString, text);
    QFETCH(bool, converts);
    QFETCH(double, value);
    double target = -1.0;
    QCOMPARE(AbstractMetaDescription::assignDouble(target, text), converts);
    QCOMPARE(target, value);
}

void MetaDescriptionTest::descriptionFollowsItsProperty()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    AbstractMetaDescription *port = settings.getPropertyByName(QStringLiteral("ComPort"));
    QSignalSpy changed(port, &AbstractMetaDescription::valueChanged);
    settings.setComPort(17);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.takeFirst().at(0).toInt(), 17);
    QVERIFY(port->setValue(18));
    QCOMPARE(settings.getComPort(), 18);
    QCOMPARE(changed.count(), 1);
    QVERIFY(port->setTextValue(QStringLiteral("19")));
    QCOMPARE(port->getValue().toInt(), 19);
    QVERIFY(!port->setTextValue(QStringLiteral("nineteen")));
    QCOMPARE(settings.getComPort(), 19);
    QVERIFY(port->isEnumType() == false);

    AbstractMetaDescription *behavior =
        settings.getPropertyByName(QStringLiteral("ExportBehavior"));
    QVERIFY(behavior->isEnumType());
    QCOMPARE(QString::fromLatin1(behavior->enumerator().name()),
             QStringLiteral("ExportBehaviorOption"));
}

void MetaDescriptionTest::descriptorLookups()
{
    TarveloUser user;
    AbstractMetaDescriptor *descriptor = user.metaDescriptor();
    QVERIFY(descriptor->propertyByName(QStringLiteral("GUID")));
    QVERIFY(!descriptor->propertyByName(QStringLiteral("guid")));
    QVERIFY(descriptor->setValue(QStringLiteral("lastname"), QStringLiteral("Петров")));
    QCOMPARE(user.getLastName(), QStringLiteral("Петров"));
    QVERIFY(descriptor->setTextValue(QStringLiteral("GENDER"), QStringLiteral("Female")));
    QCOMPARE(user.getGender(), TarveloUser::Female);
    QVERIFY(!descriptor->setValue(QStringLiteral("Nobody"), 1));
    const QMap<QString, QString> types = descriptor->getPropertiesNameAndType();
    QCOMPARE(types.value(QStringLiteral("DOBDay")), QStringLiteral("int"));
    QCOMPARE(types.value(QStringLiteral("Gender")), QStringLiteral("Enum"));

    descriptor->defaults();
    QVERIFY(user.getLastName().isEmpty());
    QCOMPARE(user.getGender(), TarveloUser::Undefined);

    descriptor->clear();
    QCOMPARE(descriptor->count(), 0);
    QVERIFY(descriptor->getProperties().isEmpty());
    QVERIFY(!descriptor->propertyByName(QStringLiteral("GUID")));
}

void MetaDescriptionTest::displayOrderAndCategories()
{
    QStringList names;
    const QList<AbstractMetaDescription *> sorted = m_descriptor.displayOrder();
    for (const AbstractMetaDescription *description : sorted)
        names << description->displayName();
    // Priority 1 first, then the rest by display name; "Quoted" shows as "Zeta".
    QCOMPARE(names,
             (QStringList {"Unquoted", "Called", "Count", "Day", "Hex", "Named", "Now", "Ratio",
                           "Scoped", "Unscoped", "Zeta"}));
    QCOMPARE(m_descriptor.getProperties().first()->name(), QStringLiteral("Quoted"));

    // The hidden one has no category; a null category collects those without one.
    QCOMPARE(m_descriptor.categories(), (QStringList {QString(), "Numbers"}));
    TarveloSettings settings;
    QCOMPARE(settings.metaDescriptor()->categories(), (QStringList {"Common", "Defaults"}));
}

void MetaDescriptionTest::capabilitiesOfComPort()
{
    TarveloSettings settings;
    const QJsonObject facts =
        settings.getPropertyCapabilities(settings.getPropertyByName(QStringLiteral("ComPort")));
    QCOMPARE(facts.value("name").toString(), QStringLiteral("ComPort"));
    QCOMPARE(facts.value("type").toString(), QStringLiteral("int"));
    QCOMPARE(facts.value("value").toInt(), 1);
    QCOMPARE(facts.value("default").toString(), QStringLiteral("1"));
    QCOMPARE(facts.value("min").toDouble(), 1.0);
    QCOMPARE(facts.value("max").toDouble(), 99.0);
    QCOMPARE(facts.value("step").toDouble(), 1.0);
    QCOMPARE(facts.value("category").toString(), QStringLiteral("Common"));
    QCOMPARE(facts.value("prefix").toString(), QStringLiteral("COM"));
    QCOMPARE(facts.value("visibleBound").toString(), QStringLiteral("AutoSearch:false"));
    // Nothing is said where there is nothing to say; without translations nothing translates.
    for (const char *absent :
         {"nameTranslated", "categoryTranslated", "prefixTranslated", "suffix", "specialType",
          "hidden", "hideDefault", "readOnly", "enum", "enums", "description", "pickOption"})
        QVERIFY2(!facts.contains(QLatin1String(absent)), absent);
    QCOMPARE(facts.size(), 10);
}

void MetaDescriptionTest::capabilitiesOfHiddenAndEnumerations()
{
    TarveloSettings settings;
    const QJsonObject hidden = settings.getPropertyCapabilities(
        settings.getPropertyByName(QStringLiteral("LastScriptTitle")));
    QCOMPARE(hidden.value("hidden").toBool(), true);
    QCOMPARE(hidden.value("default").toString(), QString());
    QVERIFY(!hidden.contains("category"));
    QVERIFY(!hidden.contains("min"));

    TarveloUser user;
    const QJsonObject gender =
        user.getPropertyCapabilities(user.getPropertyByName(QStringLiteral("Gender")));
    QCOMPARE(gender.value("type").toString(), QStringLiteral("Enum"));
    QCOMPARE(gender.value("value").toString(), QStringLiteral("Undefined"));
    QCOMPARE(gender.value("enum").toArray(), (QJsonArray {"Undefined", "Male", "Female"}));
    QCOMPARE(gender.value("enumTranslations").toArray().size(), 3);
    QCOMPARE(gender.value("hideDefault").toBool(), true);

    ExampleSettings example;
    AbstractMetaDescription *stamp = example.getPropertyByName(QStringLiteral("Stamp"));
    stamp->setEnums({"one", "two"});
    const QJsonObject listed = example.getPropertyCapabilities(stamp);
    QCOMPARE(listed.value("enums").toArray(), (QJsonArray {"one", "two"}));
    QCOMPARE(listed.value("enumsTranslations").toArray(), (QJsonArray {"one", "two"}));

    // Only what a form shows and edits, or everything.
    QCOMPARE(settings.getAllCapabilitiesJson(false).size(), 15);
    QCOMPARE(settings.getAllCapabilitiesJson(true).size(), 19);
    QCOMPARE(settings.getAllCapabilities(true).size(), 19);
}

void MetaDescriptionTest::capabilitiesTranslateWhereTheyDiffer()
{
    FakeTranslator translator;
    QCoreApplication::installTranslator(&translator);
    TarveloSettings settings;
    const QJsonObject port =
        settings.getPropertyCapabilities(settings.getPropertyByName(QStringLiteral("ComPort")));
    QCOMPARE(port.value("nameTranslated").toString(), QStringLiteral("COM-порт"));
    QCOMPARE(port.value("categoryTranslated").toString(), QStringLiteral("Общее"));
    QVERIFY(!port.contains("prefixTranslated"));
    const QJsonObject tone = settings.getPropertyCapabilities(
        settings.getPropertyByName(QStringLiteral("DefaultToneLo")));
    QCOMPARE(tone.value("suffix").toString(), QStringLiteral(" Hz"));
    QCOMPARE(tone.value("suffixTranslated").toString(), QStringLiteral(" Гц"));
    const QJsonObject behavior = settings.getPropertyCapabilities(
        settings.getPropertyByName(QStringLiteral("ExportBehavior")));
    QCOMPARE(behavior.value("enumTranslations").toArray().first().toString(),
             QStringLiteral("Открыть файл"));

    const QJsonObject quoted = PropertyCapabilities::of(describe(QStringLiteral("Quoted")));
    QCOMPARE(quoted.value("Description").toString(), QStringLiteral("What it is"));
    QCOMPARE(quoted.value("description").toString(), QStringLiteral("Что это"));
    QCOMPARE(quoted.value("pickOption").toString(), QStringLiteral("PickFile"));
    QCOMPARE(quoted.value("pickExtensions").toString(), QStringLiteral("*.csv:*.txt"));
    // A suffix marked "!-" is shown without the mark and never translated.
    const QJsonObject ratio = PropertyCapabilities::of(describe(QStringLiteral("Ratio")));
    QCOMPARE(ratio.value("suffix").toString(), QStringLiteral("x"));
    QVERIFY(!ratio.contains("suffixTranslated"));
    QCOMPARE(ratio.value("visibleBound").toString(),
             QStringLiteral("Flag:false;Mode:a:b;Other:true"));
    const QJsonObject scoped = PropertyCapabilities::of(describe(QStringLiteral("Scoped")));
    QCOMPARE(scoped.value("readOnly").toBool(), true);
    QCOMPARE(scoped.value("value").toString(), QStringLiteral("First"));
    QCOMPARE(scoped.value("default").toString(), QStringLiteral("Second"));
    QCoreApplication::removeTranslator(&translator);
}

void MetaDescriptionTest::capabilitiesString()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setComPort(4);
    QCOMPARE(settings.getPropertyCapabilitiesString(
                 settings.getPropertyByName(QStringLiteral("ComPort"))),
             QStringLiteral(R"(["name"="ComPort", "type"="int", "default"="1", "value"="4", )"
                            R"("minimum"="1", "maximum"="99", "step"="1"])"));
    QCOMPARE(settings.getPropertyCapabilitiesString(
                 settings.getPropertyByName(QStringLiteral("AutoSearch"))),
             QStringLiteral(R"(["name"="AutoSearch", "type"="bool", "default"="true", )"
                            R"("value"="true"])"));
}

QTEST_GUILESS_MAIN(MetaDescriptionTest)
#include "tst_metadescription.moc"
