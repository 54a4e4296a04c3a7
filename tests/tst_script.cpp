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
    void textReadsAs_data() { TestFiles::addRows(QStringLiteral("tables/script.txt")); }
    void textReadsAs();
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

void ScriptTest::textReadsAs()
{
    QFETCH(QString, function);
    QFETCH(QString, input);
    QFETCH(QString, expected);
    QString actual;
    if (function == QLatin1String("header")) {
        const std::unique_ptr<TarveloScript> script(TarveloScript::fromText(input));
        actual = script->headerText();
    } else if (function == QLatin1String("stage")) {
        actual = std::unique_ptr<ScriptStage>(ScriptStage::fromText(input))->toText();
    } else if (function == QLatin1String("threshold")) {
        actual = validThreshold(input);
    } else {
        const QMap<QString, QString> pairs = parseKeyValues(input, ";", "=");
        for (auto it = pairs.cbegin(); it != pairs.cend(); ++it)
            actual += (actual.isEmpty() ? "" : " ") + it.key() + '=' + it.value();
    }
    QCOMPARE(actual, expected);
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
