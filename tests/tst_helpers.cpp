#include "data/TarveloCommon.h"
#include "foundation/AppHelper.h"
#include "foundation/ConnectionHelper.h"
#include "foundation/NLogger.h"
#include "foundation/TextHelper.h"
#include "support/TestFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class HelpersTest : public QObject
{
    Q_OBJECT
private slots:
    void appVersion_data();
    void appVersion();
    void requiredButtonFollowsTheTable();
    void requiredButtonOutsideTheRangeIsNone();
    void dateTimeFileString();
    void trimTakesOneCharacterPerRound();
    void multisplitKeepsOrderAcrossSeparators();
    void connectionHelperDisconnectsOnClearAndDestruction();
    void loggerWritesToTheFirstFileNamed();
};

void HelpersTest::appVersion_data()
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
    QTest::newRow("two parts untouched") << "3.1"
                                         << "3.1"
                                         << "3.1";
    QTest::newRow("five parts untouched") << "1.2.3.4.5"
                                          << "1.2.3.4.5"
                                          << "1.2.3.4.5";
}

void HelpersTest::appVersion()
{
    QFETCH(QString, version);
    QFETCH(QString, three);
    QFETCH(QString, two);
    QCoreApplication::setApplicationVersion(version);
    QCOMPARE(AppHelper::appVersion(true), three);
    QCOMPARE(AppHelper::appVersion(false), two);
}

void HelpersTest::requiredButtonFollowsTheTable()
{
    using C = TarveloCommon;
    const QList<C::Button> expected {
        C::BTN_Green,      C::BTN_White,       C::BTN_Blue,   C::BTN_Red,   C::BTN_Yellow,
        C::BTN_Blue,       C::BTN_Red,         C::BTN_Yellow, C::BTN_White, C::BTN_Green,
        C::BTN_Pedal_Left, C::BTN_Pedal_Right, C::BTN_Left,   C::BTN_Left,  C::BTN_Right,
        C::BTN_Right,      C::BTN_Left,        C::BTN_Right};
    for (int s = 0; s < expected.size(); ++s)
        QCOMPARE(requiredButton(s), expected[s]);
    // The keys are registered and readable by value.
    const QMetaEnum stimuli = QMetaEnum::fromType<C::Stimulus>();
    QCOMPARE(stimuli.keyCount(), 18);
    QCOMPARE(QString::fromLatin1(stimuli.valueToKey(C::AUDIO_Both_Hi)),
             QStringLiteral("AUDIO_Both_Hi"));
    QCOMPARE(QMetaEnum::fromType<C::Button>().keyCount(), 10);
}

void HelpersTest::requiredButtonOutsideTheRangeIsNone()
{
    for (int value : {18, -1, 100, 21, INT_MIN, INT_MAX})
        QCOMPARE(requiredButton(value), TarveloCommon::BTN_None);
}

void HelpersTest::dateTimeFileString()
{
    const QDateTime when(QDate(2024, 3, 5), QTime(14, 20, 31, 45));
    QCOMPARE(TextHelper::DateTimeFileString(when, false), QStringLiteral("2024.03.05-14.20.31"));
    QCOMPARE(TextHelper::DateTimeFileString(when, true), QStringLiteral("2024.03.05-14.20.31.045"));
    const QString now = TextHelper::DateTimeFileString(QDateTime(), false);
    QVERIFY(now.startsWith(QDate::currentDate().toString(QStringLiteral("yyyy.MM."))));
    QCOMPARE(now.size(), 19);
}

void HelpersTest::trimTakesOneCharacterPerRound()
{
    QCOMPARE(TextHelper::trim(QStringLiteral("\"quoted\""), QChar('"')), QStringLiteral("quoted"));
    QCOMPARE(TextHelper::trim(QStringLiteral("\"\"x\"\"\""), QChar('"')), QStringLiteral("x"));
    // A longer part is still taken off one character at a time while it matches.
    QCOMPARE(TextHelper::trim(QStringLiteral("ababXab"), QStringLiteral("ab")),
             QStringLiteral("babXa"));
    QCOMPARE(TextHelper::trim(QStringLiteral("Xx"), QChar('x')), QStringLiteral("X"));
}

void HelpersTest::multisplitKeepsOrderAcrossSeparators()
{
    QCOMPARE(TextHelper::multisplit(QStringLiteral("a,b;c,,d"),
                                    {QStringLiteral(","), QStringLiteral(";")}, Qt::SkipEmptyParts),
             (QStringList {"a", "b", "c", "d"}));
    QCOMPARE(
        TextHelper::multisplit(QStringLiteral("a,,b"), {QStringLiteral(",")}, Qt::KeepEmptyParts),
        (QStringList {"a", "", "b"}));
    QCOMPARE(TextHelper::multisplit(QStringLiteral("a,b"), {}, Qt::SkipEmptyParts),
             QStringList {"a,b"});
}

void HelpersTest::connectionHelperDisconnectsOnClearAndDestruction()
{
    QObject source;
    int calls = 0;
    {
        ConnectionHelper helper;
        helper << QObject::connect(&source, &QObject::objectNameChanged, [&calls] { ++calls; });
        source.setObjectName(QStringLiteral("a"));
        QCOMPARE(calls, 1);
        helper.clear();
        source.setObjectName(QStringLiteral("b"));
        QCOMPARE(calls, 1);
        helper << QObject::connect(&source, &QObject::objectNameChanged, [&calls] { ++calls; });
        source.setObjectName(QStringLiteral("c"));
        QCOMPARE(calls, 2);
    }
    source.setObjectName(QStringLiteral("d"));
    QCOMPARE(calls, 2);
}

void HelpersTest::loggerWritesToTheFirstFileNamed()
{
    QTemporaryDir dir;
    const QString first = dir.filePath(QStringLiteral("first.log"));
    const QString second = dir.filePath(QStringLiteral("second.log"));
    NLogger::LogToFile(QStringLiteral("one"), first);
    NLogger::LogToFile(QStringLiteral("TYPE"), QStringLiteral("two"), second, false);
    QVERIFY(!QFile::exists(second));
    const QList<QByteArray> lines = TestFiles::read(first).split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3}\tone\r$"))
                .match(QString::fromUtf8(lines[0]))
                .hasMatch());
    QVERIFY(lines[1].endsWith("\tTYPE\ttwo\r"));

    NLogger logger;
    QVERIFY(logger.path().endsWith(QStringLiteral(".log")));
    QVERIFY(logger.path().contains(QStringLiteral("_")));
}

QTEST_GUILESS_MAIN(HelpersTest)
#include "tst_helpers.moc"
