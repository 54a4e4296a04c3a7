#include "data/KeyValueText.h"
#include "data/TarveloScript.h"
#include "support/TestFiles.h"

#include <QtTest>

#include <memory>

class ScriptTest : public QObject
{
    Q_OBJECT
private slots:
    void exampleIsWrittenByteForByteAndReadsBack();
    void textReadsAs_data() { TestFiles::addRows(QStringLiteral("tables/script.txt")); }
    void textReadsAs();
    void generatedNeighboursNeverRepeatAndTimesAreWholeHundreds();
    void degeneratePoolsEndTheDraw();
};

void ScriptTest::exampleIsWrittenByteForByteAndReadsBack()
{
    TarveloScript script;
    script.setTitle(QStringLiteral("Проба"));
    script.setDescription(QStringLiteral("Две ступени"));
    script.setMessage(QStringLiteral("Нажимайте кнопку цвета лампы"));
    // Stage lines in another order, without the derived buttons and times left to defaults.
    script.addStage(ScriptStage::fromText("rpt=3;s+2=0;s+1=1;s-0=2;s-1=3;s-2=4;stop=5;[s=3]"
                                          "[s=13,t=1500,d=700]"));
    script.addStage(ScriptStage::fromText("s+2=0;rpt=1;[s=10]"));
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

void ScriptTest::generatedNeighboursNeverRepeatAndTimesAreWholeHundreds()
{
    const QList<int> pool {0, 5, 12};
    QSet<int> seen;
    QSet<int> durations;
    for (int run = 0; run < 200; ++run) {
        const std::unique_ptr<ScriptStage> stage(
            ScriptStage::generate(30, pool, 1050, 250, 400, 0));
        QCOMPARE(stage->steps.size(), 30);
        for (int i = 0; i < stage->steps.size(); ++i) {
            durations << stage->steps[i]->duration;
            QCOMPARE(stage->steps[i]->delay, 250); // no jitter: the time itself
            QVERIFY(pool.contains(stage->steps[i]->stimulus));
            seen << stage->steps[i]->stimulus;
            if (i > 0)
                QVERIFY(stage->steps[i]->stimulus != stage->steps[i - 1]->stimulus);
        }
    }
    QCOMPARE(seen.size(), pool.size());
    // Whole hundreds drawn from [1050, 1450): the lower bound falls to 1000, the upper is out.
    QCOMPARE(durations, (QSet<int> {1000, 1100, 1200, 1300}));
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
