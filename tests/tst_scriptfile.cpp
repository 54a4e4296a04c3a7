#include "data/KeyValueText.h"
#include "data/TarveloScript.h"
#include "support/TestFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QString examplePath()
{
    return QStringLiteral(TARVELO_TEST_DATA "/example.script");
}
} // namespace

class ScriptFileTest : public QObject
{
    Q_OBJECT
private slots:
    void exampleReadsIntoItsFields();
    void exampleWritesBackByteForByte();
    void headerOnlyFileIsAnEmptyScript_data();
    void headerOnlyFileIsAnEmptyScript();
    void stageLineEdgeCases_data();
    void stageLineEdgeCases();
    void stimulusBoundIsTwentyTwo_data();
    void stimulusBoundIsTwentyTwo();
    void malformedStepGroupsStillMakeSteps();
    void tonesAreCutToSixteenBits();
    void missingFileFailsAndBrokenFileLoadsDefaults();
    void saveNeedsAPathAndReplacesAtomically();
    void removeStageKeepsTheObject();
    void stageValueNormalisesNumbers();
    void parseKeyValuesDropsIncompletePairs();
    void validThresholdAcceptsZeroToTen_data();
    void validThresholdAcceptsZeroToTen();
};

void ScriptFileTest::exampleReadsIntoItsFields()
{
    TarveloScript script;
    QVERIFY(script.load(examplePath()));
    QCOMPARE(script.title(), QStringLiteral("Проба"));
    QCOMPARE(script.description(), QStringLiteral("Две ступени"));
    QCOMPARE(script.message(), QStringLiteral("Нажимайте кнопку цвета лампы"));
    QCOMPARE(script.fullDuration(), false);
    QCOMPARE(script.toneLo(), quint16(100));
    QCOMPARE(script.toneHi(), quint16(1000));
    QCOMPARE(script.filePath(), examplePath());
    const QList<ScriptStage *> stages = script.stages();
    QCOMPARE(stages.size(), 2);
    QCOMPARE(stages[0]->stop, QStringLiteral("5"));
    QCOMPARE(stages[0]->sm2, QStringLiteral("4"));
    QCOMPARE(stages[0]->sm1, QStringLiteral("3"));
    QCOMPARE(stages[0]->s0, QStringLiteral("2"));
    QCOMPARE(stages[0]->sp1, QStringLiteral("1"));
    QCOMPARE(stages[0]->sp2, QStringLiteral("0"));
    QCOMPARE(stages[0]->maxRepeats, 3);
    QCOMPARE(stages[0]->steps.size(), 2);
    QCOMPARE(stages[0]->steps[1]->stimulus, 13);
    QCOMPARE(stages[0]->steps[1]->duration, 1500);
    QCOMPARE(stages[0]->steps[1]->delay, 700);
    QVERIFY(stages[1]->stop.isEmpty());
    QVERIFY(stages[1]->s0.isEmpty());
    QCOMPARE(stages[1]->sp2, QStringLiteral("0"));
    QCOMPARE(stages[1]->maxRepeats, 1);
    QCOMPARE(stages[1]->steps.size(), 1);
    QCOMPARE(stages[1]->steps[0]->stimulus, 10);
}

void ScriptFileTest::exampleWritesBackByteForByte()
{
    const QByteArray expected = TestFiles::read(examplePath());
    QVERIFY(!expected.isEmpty());

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

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Проба.script"));
    QVERIFY(script.save(path));
    QCOMPARE(TestFiles::read(path), expected);
    QCOMPARE(script.headerText().toUtf8(), expected.left(expected.indexOf("\r\n")));

    // And a file read in writes back unchanged.
    TarveloScript reread;
    QVERIFY(reread.load(examplePath()));
    QCOMPARE(reread.toText().toUtf8(), expected);
}

void ScriptFileTest::headerOnlyFileIsAnEmptyScript_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("header only") << QByteArray("title=Один;toneLo=300;toneHi=900;stages=0;\r\n");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no line break")
        << QByteArray("title=X;stop=1;[s=1,b=2,t=3,d=4]stop=2;[s=2,b=1,t=1,d=1]");
    QTest::newRow("only blank lines") << QByteArray("\n\n\n");
}

void ScriptFileTest::headerOnlyFileIsAnEmptyScript()
{
    QFETCH(QByteArray, content);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.script"));
    QVERIFY(TestFiles::write(path, content));

    TarveloScript script;
    QVERIFY(script.load(path));
    QVERIFY(script.title().isEmpty());
    QCOMPARE(script.toneLo(), quint16(100));
    QCOMPARE(script.toneHi(), quint16(1000));
    QVERIFY(script.stages().isEmpty());
}

void ScriptFileTest::stageLineEdgeCases_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("stop");
    QTest::addColumn<int>("repeats");
    QTest::addColumn<int>("stepCount");

    QTest::newRow("no bracket") << "stop=4;rpt=2;"
                                << "4" << 2 << 0;
    QTest::newRow("bracket at position 0") << "[s=1,t=5,d=5]stop=4;"
                                           << "" << 3 << 0;
    QTest::newRow("non-numeric rpt") << "stop=1;rpt=many;[s=1]"
                                     << "1" << 0 << 1;
    QTest::newRow("missing rpt keeps three") << "stop=1;[s=1]"
                                             << "1" << 3 << 1;
    QTest::newRow("leading zeros go") << "stop=007;rpt=02;[s=1][s=2]"
                                      << "7" << 2 << 2;
    QTest::newRow("non-numeric stop is empty") << "stop=five;[s=1]"
                                               << "" << 3 << 1;
    QTest::newRow("blanks around the line") << "  stop=3;rpt=1;[s=1,t=1,d=1]  \r"
                                            << "3" << 1 << 1;
    QTest::newRow("key without value") << "stop=;rpt=;[s=1]"
                                       << "" << 3 << 1;
}

void ScriptFileTest::stageLineEdgeCases()
{
    QFETCH(QString, line);
    QFETCH(QString, stop);
    QFETCH(int, repeats);
    QFETCH(int, stepCount);
    QScopedPointer<ScriptStage> stage(ScriptStage::fromText(line));
    QCOMPARE(stage->stop, stop);
    QCOMPARE(stage->maxRepeats, repeats);
    QCOMPARE(stage->steps.size(), stepCount);
}

void ScriptFileTest::stimulusBoundIsTwentyTwo_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("stimulus");
    QTest::newRow("17 stays") << "17" << 17;
    QTest::newRow("21 stays") << "21" << 21;
    QTest::newRow("22 becomes 0") << "22" << 0;
    QTest::newRow("25 becomes 0") << "25" << 0;
    QTest::newRow("negative stays") << "-3" << -3;
    QTest::newRow("garbage is 0") << "x1" << 0;
}

void ScriptFileTest::stimulusBoundIsTwentyTwo()
{
    QFETCH(QString, value);
    QFETCH(int, stimulus);
    QScopedPointer<ScriptStage> stage(ScriptStage::fromText(QStringLiteral("stop=1;[s=") + value
                                                            + QStringLiteral(",t=10,d=20]")));
    QCOMPARE(stage->steps.size(), 1);
    QCOMPARE(stage->steps[0]->stimulus, stimulus);
    // The button written out is always derived; 21 has none (9).
    if (stimulus == 21)
        QVERIFY(stage->toText().contains(QStringLiteral("[s=21,b=9,t=10,d=20]")));
}

void ScriptFileTest::malformedStepGroupsStillMakeSteps()
{
    QScopedPointer<ScriptStage> stage(
        ScriptStage::fromText(QStringLiteral("stop=1;[][d=5,s=4,b=99,zz=1][t==3,junk]")));
    // "[" alone is a piece, the keys may come in any order, "b" and unknown keys are ignored,
    // and "t==3" is "t=3" since empty pieces are dropped.
    QCOMPARE(stage->steps.size(), 3);
    QCOMPARE(stage->steps[0]->stimulus, 1);
    QCOMPARE(stage->steps[0]->delay, 1000);
    QCOMPARE(stage->steps[0]->duration, 2000);
    QCOMPARE(stage->steps[1]->stimulus, 4);
    QCOMPARE(stage->steps[1]->delay, 5);
    QCOMPARE(stage->steps[2]->duration, 3);
}

void ScriptFileTest::tonesAreCutToSixteenBits()
{
    QScopedPointer<TarveloScript> script(TarveloScript::fromText(
        QStringLiteral("title=T;toneLo=70000;toneHi=65535;fullDuration=1;\nstop=1;")));
    QCOMPARE(script->toneLo(), quint16(4464));
    QCOMPARE(script->toneHi(), quint16(65535));
    QVERIFY(script->fullDuration());
    QCOMPARE(script->stages().size(), 1);
}

void ScriptFileTest::missingFileFailsAndBrokenFileLoadsDefaults()
{
    QTemporaryDir dir;
    TarveloScript missing;
    QVERIFY(!missing.load(dir.filePath(QStringLiteral("none.script"))));
    QVERIFY(missing.stages().isEmpty());

    const QString path = dir.filePath(QStringLiteral("broken.script"));
    QByteArray noise;
    for (int i = 0; i < 4096; ++i)
        noise.append(char((i * 7919) % 256));
    QVERIFY(TestFiles::write(path, noise));
    TarveloScript broken;
    QVERIFY(broken.load(path));
    // Whatever the reader made of the noise writes out as a well-formed script.
    QScopedPointer<TarveloScript> again(TarveloScript::fromText(broken.toText()));
    QCOMPARE(again->toText(), broken.toText());
}

void ScriptFileTest::saveNeedsAPathAndReplacesAtomically()
{
    TarveloScript script;
    QVERIFY(!script.save());

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.script"));
    QVERIFY(TestFiles::write(
        path, "old content that is longer than the new one will be, by a good margin......"));
    script.setTitle(QStringLiteral("a"));
    QVERIFY(script.save(path));
    QCOMPARE(TestFiles::read(path), script.toText().toUtf8());
    QVERIFY(script.filePath().isEmpty());
    // No temporary file is left beside the target.
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList {QStringLiteral("a.script")});

    // A folder that doesn't exist can't take the file, and nothing is created.
    QVERIFY(!script.save(dir.filePath(QStringLiteral("missing/a.script"))));
    QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("missing"))));
}

void ScriptFileTest::removeStageKeepsTheObject()
{
    TarveloScript script;
    auto *stage = new ScriptStage;
    script.addStage(stage);
    script.removeStage(5);
    script.removeStage(-1);
    QCOMPARE(script.stages().size(), 1);
    script.removeStage(0);
    QVERIFY(script.stages().isEmpty());
    stage->stop = QStringLiteral("1"); // still alive: the caller owns it now
    delete stage;
}

void ScriptFileTest::stageValueNormalisesNumbers()
{
    ScriptStage stage;
    stage.setValue(QStringLiteral("s+1"), QStringLiteral("03"));
    stage.setValue(QStringLiteral("s-0"), QStringLiteral("x"));
    stage.setValue(QStringLiteral("rpt"), QString());
    stage.setValue(QStringLiteral("bogus"), QStringLiteral("4"));
    QCOMPARE(stage.value(QStringLiteral("s+1")), QStringLiteral("3"));
    QCOMPARE(stage.value(QStringLiteral("s-0")), QString());
    QCOMPARE(stage.value(QStringLiteral("rpt")), QStringLiteral("0"));
    QCOMPARE(stage.value(QStringLiteral("bogus")), QString());
    QCOMPARE(stage.headerText(), QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=3;s+2=;rpt=0;"));
}

void ScriptFileTest::parseKeyValuesDropsIncompletePairs()
{
    const auto map = parseKeyValues(QStringLiteral("  a=1;;b= 2 ;c=;=4;d=5=6;a=7;e  = 8 "),
                                    QStringLiteral(";"), QStringLiteral("="));
    QCOMPARE(map.value(QStringLiteral("a")), QStringLiteral("7"));
    QCOMPARE(map.value(QStringLiteral("b")), QStringLiteral("2"));
    QVERIFY(!map.contains(QStringLiteral("c")));
    QVERIFY(!map.contains(QStringLiteral("4")));
    QVERIFY(!map.contains(QStringLiteral("d")));
    QCOMPARE(map.value(QStringLiteral("e  ")), QStringLiteral("8"));
}

void ScriptFileTest::validThresholdAcceptsZeroToTen_data()
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
    QTest::newRow("empty") << ""
                           << "";
}

void ScriptFileTest::validThresholdAcceptsZeroToTen()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(validThreshold(text), expected);
}

QTEST_GUILESS_MAIN(ScriptFileTest)
#include "tst_scriptfile.moc"
