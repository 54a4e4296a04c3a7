#include "data/ScriptStage.h"

#include <QSet>
#include <QtTest>

class ScriptGenerateTest : public QObject
{
    Q_OBJECT
private slots:
    void neighboursNeverRepeat();
    void jitteredTimesAreWholeHundredsBelowTheUpperBound_data();
    void jitteredTimesAreWholeHundredsBelowTheUpperBound();
    void timesWithoutJitterAreExact();
    void degeneratePoolsEndTheDraw();
};

void ScriptGenerateTest::neighboursNeverRepeat()
{
    const QList<int> pool {0, 5, 12};
    QSet<int> seen;
    for (int run = 0; run < 200; ++run) {
        QScopedPointer<ScriptStage> stage(ScriptStage::generate(30, pool, 2000, 1000, 0, 0));
        QCOMPARE(stage->steps.size(), 30);
        for (int i = 0; i < stage->steps.size(); ++i) {
            QVERIFY(pool.contains(stage->steps[i]->stimulus));
            seen << stage->steps[i]->stimulus;
            if (i > 0)
                QVERIFY(stage->steps[i]->stimulus != stage->steps[i - 1]->stimulus);
        }
        // Transfers keep their defaults; the caller fills them.
        QCOMPARE(stage->headerText(), QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=3;"));
    }
    QCOMPARE(seen.size(), pool.size());
}

void ScriptGenerateTest::jitteredTimesAreWholeHundredsBelowTheUpperBound_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<int>("jitter");
    QTest::addColumn<QList<int>>("possible");
    QTest::newRow("1000 + 500") << 1000 << 500 << QList<int> {1000, 1100, 1200, 1300, 1400};
    QTest::newRow("1050 + 100 collapses below the base") << 1050 << 100 << QList<int> {1000};
    QTest::newRow("1000 + 50 has no width") << 1000 << 50 << QList<int> {1000};
    QTest::newRow("250 + 200") << 250 << 200 << QList<int> {200, 300};
}

void ScriptGenerateTest::jitteredTimesAreWholeHundredsBelowTheUpperBound()
{
    QFETCH(int, base);
    QFETCH(int, jitter);
    QFETCH(QList<int>, possible);
    QSet<int> delays;
    QSet<int> durations;
    for (int run = 0; run < 100; ++run) {
        QScopedPointer<ScriptStage> stage(
            ScriptStage::generate(20, {1, 2}, base, base, jitter, jitter));
        for (const ScriptStep *step : stage->steps) {
            delays << step->delay;
            durations << step->duration;
        }
    }
    const QSet<int> expected(possible.cbegin(), possible.cend());
    // 2000 draws over at most five values: every value shows, and no other.
    QCOMPARE(delays, expected);
    QCOMPARE(durations, expected);
}

void ScriptGenerateTest::timesWithoutJitterAreExact()
{
    QScopedPointer<ScriptStage> stage(ScriptStage::generate(10, {3, 4}, 1234, 777, 0, -5));
    for (const ScriptStep *step : stage->steps) {
        QCOMPARE(step->duration, 1234);
        QCOMPARE(step->delay, 777);
    }
}

void ScriptGenerateTest::degeneratePoolsEndTheDraw()
{
    QScopedPointer<ScriptStage> none(ScriptStage::generate(0, {1, 2}, 1000, 1000, 0, 0));
    QVERIFY(none->steps.isEmpty());
    QScopedPointer<ScriptStage> negative(ScriptStage::generate(-4, {1, 2}, 1000, 1000, 0, 0));
    QVERIFY(negative->steps.isEmpty());

    // An empty pool stands for stimulus 0; one value can't alternate, so one step is all.
    QScopedPointer<ScriptStage> empty(ScriptStage::generate(5, {}, 1000, 1000, 0, 0));
    QCOMPARE(empty->steps.size(), 1);
    QCOMPARE(empty->steps[0]->stimulus, 0);
    QScopedPointer<ScriptStage> single(ScriptStage::generate(5, {7, 7, 7}, 1000, 1000, 0, 0));
    QCOMPARE(single->steps.size(), 1);
    QCOMPARE(single->steps[0]->stimulus, 7);
}

QTEST_GUILESS_MAIN(ScriptGenerateTest)
#include "tst_scriptgenerate.moc"
