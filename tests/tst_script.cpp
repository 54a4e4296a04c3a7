#include "data/KeyValueText.h"
#include "data/TarveloScript.h"
#include "support/TestFiles.h"

#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class ScriptTest : public QObject
{
    Q_OBJECT
private slots:
    void exampleIsWrittenByteForByteAndReadsBack();
    void fileHeaderReadsAs_data();
    void fileHeaderReadsAs();
    void stageLineReadsAs_data();
    void stageLineReadsAs();
    void keyValuesDropIncompletePairs();
    void validThresholdAcceptsZeroToTen_data();
    void validThresholdAcceptsZeroToTen();
    void generatedNeighboursNeverRepeat();
    void generatedTimesAreWholeHundredsBelowTheUpperBound_data();
    void generatedTimesAreWholeHundredsBelowTheUpperBound();
    void degeneratePoolsEndTheDraw();
};

void ScriptTest::exampleIsWrittenByteForByteAndReadsBack()
{
    // Built from scratch, not read: the writer alone must produce the file.
    TarveloScript script;
    script.setTitle(QStringLiteral("Проба"));
    script.setDescription(QStringLiteral("Две ступени"));
    script.setMessage(QStringLiteral("Нажимайте кнопку цвета лампы"));
    auto *first = new ScriptStage;
    for (const auto &[key, value] : {std::pair {"stop", "5"},
                                     {"s-2", "4"},
                                     {"s-1", "3"},
                                     {"s-0", "2"},
                                     {"s+1", "1"},
                                     {"s+2", "0"},
                                     {"rpt", "3"}})
        first->setValue(QString::fromLatin1(key), QString::fromLatin1(value));
    first->steps << new ScriptStep {1000, 2000, 3} << new ScriptStep {700, 1500, 13};
    auto *second = new ScriptStage;
    second->sp2 = QStringLiteral("0");
    second->maxRepeats = 1;
    second->steps << new ScriptStep {1000, 2000, 10};
    script.addStage(first);
    script.addStage(second);
    QVERIFY(!script.save()); // no file of its own yet

    QTemporaryDir dir;
    QVERIFY(script.save(dir.filePath(QStringLiteral("Проба.script"))));
    const QByteArray written = TestFiles::read(dir.filePath(QStringLiteral("Проба.script")));
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("example.script"), written));

    TarveloScript read;
    QVERIFY(read.load(TestFiles::dataPath(QStringLiteral("example.script"))));
    QCOMPARE(read.toText().toUtf8(), written);
    QVERIFY(!read.load(dir.filePath(QStringLiteral("missing.script"))));
}

void ScriptTest::fileHeaderReadsAs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("header");
    const QString empty =
        QStringLiteral("title=;description=;message=;fullDuration=0;toneLo=100;toneHi=1000;");
    QTest::newRow("empty file") << QByteArray() << empty + "stages=0;";
    // A header without any stage line counts as an empty script, header values included.
    QTest::newRow("header only") << QByteArray("title=Один;toneLo=300;toneHi=900;\r\n")
                                 << empty + "stages=0;";
    QTest::newRow("only blank lines") << QByteArray("\n\n\n") << empty + "stages=0;";
    QTest::newRow("tones cut to 16 bits")
        << QByteArray("title=T;toneLo=70000;toneHi=65535;fullDuration=1;\nstop=1;")
        << "title=T;description=;message=;fullDuration=1;toneLo=4464;toneHi=65535;stages=1;";
    QTest::newRow("unknown keys and values with blanks")
        << QByteArray("x=1;title= T ;message=a=b;fullDuration=yes\nstop=1;\nstop=2;")
        << "title=T;description=;message=;fullDuration=0;toneLo=100;toneHi=1000;stages=2;";
}

void ScriptTest::fileHeaderReadsAs()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, header);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.script"));
    QVERIFY(TestFiles::write(path, content));
    TarveloScript script;
    QVERIFY(script.load(path));
    QCOMPARE(script.headerText(), header);
}

void ScriptTest::stageLineReadsAs_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const QString none = QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;");
    QTest::newRow("no steps") << "stop=4;rpt=2;"
                              << "stop=4;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=2;";
    QTest::newRow("a bracket at the start leaves no steps")
        << "[s=1,t=5,d=5]stop=4;" << none + "rpt=3;";
    QTest::newRow("leading zeros go, the button is derived")
        << "stop=007;rpt=02;[s=1][s=2,b=7]"
        << "stop=7;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=2;[s=1,b=2,t=2000,d=1000][s=2,b=4,t=2000,d=1000]";
    QTest::newRow("non-numbers are empty, a non-numeric rpt is 0")
        << "  stop=five;s+1=;rpt=many;[s=3,t=1,d=1]  \r" << none + "rpt=0;[s=3,b=3,t=1,d=1]";
    QTest::newRow("stimuli up to 21 and below 0 stay")
        << "s-1=1;[s=21,t=10,d=20][s=-3,t=10,d=20]"
        << "stop=;s-2=;s-1=1;s-0=;s+1=;s+2=;rpt=3;[s=21,b=9,t=10,d=20][s=-3,b=9,t=10,d=20]";
    QTest::newRow("stimuli from 22 and garbage are 0")
        << "rpt=3;[s=22,t=10,d=20][s=x1,t=10,d=20]"
        << none + "rpt=3;[s=0,b=0,t=10,d=20][s=0,b=0,t=10,d=20]";
    // "[" alone is a step of defaults, keys come in any order, "t==3" is "t=3".
    QTest::newRow("malformed groups still make steps")
        << "stop=1;[][d=5,s=4,zz=1][t==3,junk]"
        << "stop=1;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=3;"
           "[s=1,b=2,t=2000,d=1000][s=4,b=1,t=2000,d=5][s=1,b=2,t=3,d=1000]";
}

void ScriptTest::stageLineReadsAs()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    const std::unique_ptr<ScriptStage> stage(ScriptStage::fromText(line));
    QCOMPARE(stage->toText(), expected);
}

void ScriptTest::keyValuesDropIncompletePairs()
{
    const auto map = parseKeyValues(QStringLiteral("  a=1;;b= 2 ;c=;=4;d=5=6;a=7;e  = 8 "),
                                    QStringLiteral(";"), QStringLiteral("="));
    QCOMPARE(map, (QMap<QString, QString> {{"a", "7"}, {"b", "2"}, {"e  ", "8"}}));
}

void ScriptTest::validThresholdAcceptsZeroToTen_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << "0"
                       << "0";
    QTest::newRow("10 with blanks") << " 10 "
                                    << "10";
    QTest::newRow("11") << "11"
                        << "";
    QTest::newRow("leading zero") << "05"
                                  << "";
    QTest::newRow("negative") << "-1"
                              << "";
}

void ScriptTest::validThresholdAcceptsZeroToTen()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(validThreshold(text), expected);
}

void ScriptTest::generatedNeighboursNeverRepeat()
{
    const QList<int> pool {0, 5, 12};
    QSet<int> seen;
    for (int run = 0; run < 200; ++run) {
        const std::unique_ptr<ScriptStage> stage(ScriptStage::generate(30, pool, 2000, 1000, 0, 0));
        QCOMPARE(stage->steps.size(), 30);
        for (int i = 0; i < stage->steps.size(); ++i) {
            QVERIFY(pool.contains(stage->steps[i]->stimulus));
            seen << stage->steps[i]->stimulus;
            if (i > 0)
                QVERIFY(stage->steps[i]->stimulus != stage->steps[i - 1]->stimulus);
        }
    }
    QCOMPARE(seen.size(), pool.size());
}

void ScriptTest::generatedTimesAreWholeHundredsBelowTheUpperBound_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<int>("jitter");
    QTest::addColumn<QList<int>>("possible");
    QTest::newRow("1000 + 500") << 1000 << 500 << QList<int> {1000, 1100, 1200, 1300, 1400};
    QTest::newRow("1050 + 100 collapses below the base") << 1050 << 100 << QList<int> {1000};
    QTest::newRow("250 + 200") << 250 << 200 << QList<int> {200, 300};
    QTest::newRow("no jitter is exact") << 1234 << 0 << QList<int> {1234};
}

void ScriptTest::generatedTimesAreWholeHundredsBelowTheUpperBound()
{
    QFETCH(int, base);
    QFETCH(int, jitter);
    QFETCH(QList<int>, possible);
    QSet<int> delays;
    QSet<int> durations;
    for (int run = 0; run < 100; ++run) {
        const std::unique_ptr<ScriptStage> stage(
            ScriptStage::generate(20, {1, 2}, base, base, jitter, jitter));
        for (const ScriptStep *step : stage->steps) {
            delays << step->delay;
            durations << step->duration;
        }
    }
    // 2000 draws over at most five values: every value shows, and no other.
    const QSet<int> expected(possible.cbegin(), possible.cend());
    QCOMPARE(delays, expected);
    QCOMPARE(durations, expected);
}

void ScriptTest::degeneratePoolsEndTheDraw()
{
    const std::unique_ptr<ScriptStage> none(ScriptStage::generate(-4, {1, 2}, 1000, 1000, 0, 0));
    QVERIFY(none->steps.isEmpty());
    // An empty pool stands for stimulus 0; one value can't alternate, so one step is all.
    const std::unique_ptr<ScriptStage> empty(ScriptStage::generate(5, {}, 1000, 1000, 0, 0));
    QCOMPARE(empty->toText(),
             QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=3;"
                            "[s=0,b=0,t=1000,d=1000]"));
    const std::unique_ptr<ScriptStage> single(ScriptStage::generate(5, {7, 7}, 1000, 1000, 0, 0));
    QCOMPARE(single->steps.size(), 1);
    QCOMPARE(single->steps[0]->stimulus, 7);
}

QTEST_GUILESS_MAIN(ScriptTest)
#include "tst_script.moc"
