#include "SessionFixtures.h"
#include "data/TarveloSession.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace SessionFixtures;

namespace {
const QString ExampleName = QStringLiteral("2024.03.05-14.20.31.session");

QString examplePath()
{
    return QStringLiteral(TARVELO_TEST_DATA "/example.session");
}

TarveloSession *exampleSession()
{
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Проба"));
    session->setUserName(QStringLiteral("Иванов Иван Иванович"));
    session->setUserGUID(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    session->setStart(exampleStart());
    session->setEnd(QDateTime(QDate(2024, 3, 5), QTime(14, 21, 7)));
    session->addStage(
        stage(0, 2, QStringLiteral("+1"),
              {step(3, 3, true, 412, 2000, 1000), step(13, 10, false, 1500, 1500, 700)}));
    return session;
}

std::unique_ptr<TarveloSession> loadText(const QByteArray &text)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("x.session"));
    if (!TestFiles::write(path, text))
        return nullptr;
    return std::unique_ptr<TarveloSession>(TarveloSession::load(path));
}
} // namespace

class SessionFileTest : public QObject
{
    Q_OBJECT
private slots:
    void handBuiltExampleIsWrittenByteForByte();
    void exampleReadsBackWithTheSameDerivedValues();
    void unreadableFilesGiveAnEmptySession_data();
    void unreadableFilesGiveAnEmptySession();
    void loadFillsTheGivenObject();
    void buttonTenSurvivesAndRequiredButtonIsDerived();
    void stagesMissingOrNotAnArrayKeepTheHeader_data();
    void stagesMissingOrNotAnArrayKeepTheHeader();
    void stageEntryThatIsNotAnObjectIsSkipped();
    void stepEntryThatIsNotAnObjectIsADefaultStep();
    void announcedStepCountIsKeptAsItIs();
    void saveCreatesAVanishedFolder();
    void sameSecondReplacesTheEarlierFile();
    void saveIntoAFolderThatCannotExistFails();
    void invalidStartIsNamedAfterNow();
};

void SessionFileTest::handBuiltExampleIsWrittenByteForByte()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(exampleSession());
    QVERIFY(session->save(dir.path()));
    const QByteArray written = TestFiles::read(dir.filePath(ExampleName));
    const QByteArray expected = TestFiles::read(examplePath());
    QVERIFY(!expected.isEmpty());
    QCOMPARE(written, expected);
}

void SessionFileTest::exampleReadsBackWithTheSameDerivedValues()
{
    const std::unique_ptr<TarveloSession> loaded(TarveloSession::load(examplePath()));
    const std::unique_ptr<TarveloSession> built(exampleSession());
    QCOMPARE(loaded->scriptTitle(), QStringLiteral("Проба"));
    QCOMPARE(loaded->userName(), QStringLiteral("Иванов Иван Иванович"));
    QCOMPARE(loaded->userGUID(), QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    QCOMPARE(loaded->start(), exampleStart());
    QCOMPARE(loaded->end(), QDateTime(QDate(2024, 3, 5), QTime(14, 21, 7)));
    QCOMPARE(loaded->stages().size(), 1);
    // The flags belong to the run, not the file.
    QVERIFY(!loaded->finished() && !loaded->loaded() && !loaded->doNotRecord());

    const SessionStage &stage = *loaded->stages().first();
    QCOMPARE(stage.index, 0);
    QCOMPARE(stage.stepCount, 2);
    QCOMPARE(stage.action, QStringLiteral("+1"));
    QCOMPARE(stage.steps().size(), 2);
    const SessionStep &missed = *stage.steps().at(1);
    QCOMPARE(missed.s, 13);
    QCOMPARE(missed.b, 10);
    QCOMPARE(missed.b2, 5);
    QCOMPARE(missed.v, false);
    QCOMPARE(missed.r, 1500);
    QCOMPARE(missed.t, 1500);
    QCOMPARE(missed.d, 700);

    // By hand: r = 0.412 and 1.5 s, t = 2 and 1.5 s.
    QCOMPARE(stage.correctCount(), 1);
    QCOMPARE(stage.missedCount(), 1);
    QCOMPARE(stage.lateCount(), 0);
    QCOMPARE(stage.errorCount(), 0);
    QCOMPARE(stage.speedStep(), 1.75);
    QVERIFY(qAbs(stage.reactionMean() - 0.956) < 1e-12);
    QVERIFY(qAbs(stage.reactionVariance() - 0.591872) < 1e-12);

    // The file reader goes through addStep like the live path: the same bits come out.
    const SessionStage &live = *built->stages().first();
    QCOMPARE(stage.speedStep(), live.speedStep());
    QCOMPARE(stage.reactionMean(), live.reactionMean());
    QCOMPARE(stage.reactionVariance(), live.reactionVariance());
    QCOMPARE(stage.reactionSigma(), live.reactionSigma());
}

void SessionFileTest::unreadableFilesGiveAnEmptySession_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray example = TestFiles::read(examplePath());
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << example.left(example.size() / 2);
    QTest::newRow("garbage") << QByteArray("\x01\xff not json {{{");
    QTest::newRow("array at the top") << QByteArray("[{\"scriptTitle\": \"x\"}]");
    QTest::newRow("number at the top") << QByteArray("42");
}

void SessionFileTest::unreadableFilesGiveAnEmptySession()
{
    QFETCH(QByteArray, content);
    const std::unique_ptr<TarveloSession> session = loadText(content);
    QVERIFY(session);
    QVERIFY(session->stages().isEmpty());
    QVERIFY(!session->start().isValid());
    QVERIFY(session->scriptTitle().isEmpty());
}

void SessionFileTest::loadFillsTheGivenObject()
{
    TarveloSession session;
    session.setScriptTitle(QStringLiteral("kept"));
    QCOMPARE(TarveloSession::load(QStringLiteral("/nonexistent/none.session"), &session), &session);
    QCOMPARE(session.scriptTitle(), QStringLiteral("kept"));
    QCOMPARE(TarveloSession::load(examplePath(), &session), &session);
    QCOMPARE(session.scriptTitle(), QStringLiteral("Проба"));
}

void SessionFileTest::buttonTenSurvivesAndRequiredButtonIsDerived()
{
    TarveloSession session;
    session.setStart(exampleStart());
    SessionStep *odd = step(3, 10, true, 100, 200);
    odd->b2 = 7; // a wrong stored value must not reach the file
    session.addStage(stage(1, 1, QString(), {odd}));

    const QJsonObject written =
        session.toJson()["stages"].toArray()[0].toObject()["steps"].toArray()[0].toObject();
    QCOMPARE(written["b"].toInt(), 10);
    QCOMPARE(written["b2"].toInt(), 3);

    QTemporaryDir dir;
    QVERIFY(session.save(dir.path()));
    const std::unique_ptr<TarveloSession> back(TarveloSession::load(dir.filePath(ExampleName)));
    const SessionStep &read = *back->stages().first()->steps().first();
    QCOMPARE(read.b, 10);
    QCOMPARE(read.b2, 3);
    QCOMPARE(back->stages().first()->errorCount(), 1);
}

void SessionFileTest::stagesMissingOrNotAnArrayKeepTheHeader_data()
{
    QTest::addColumn<QByteArray>("stages");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("number") << QByteArray(", \"stages\": 5");
    QTest::newRow("object") << QByteArray(", \"stages\": {\"index\": 1}");
    QTest::newRow("null") << QByteArray(", \"stages\": null");
}

void SessionFileTest::stagesMissingOrNotAnArrayKeepTheHeader()
{
    QFETCH(QByteArray, stages);
    const std::unique_ptr<TarveloSession> session =
        loadText("{\"scriptTitle\": \"T\", \"userName\": \"U\", \"start\": \"2024-03-05T14:20:31\""
                 + stages + "}");
    QCOMPARE(session->scriptTitle(), QStringLiteral("T"));
    QCOMPARE(session->userName(), QStringLiteral("U"));
    QCOMPARE(session->start(), exampleStart());
    QVERIFY(session->stages().isEmpty());
}

void SessionFileTest::stageEntryThatIsNotAnObjectIsSkipped()
{
    const std::unique_ptr<TarveloSession> session =
        loadText("{\"stages\": [1, \"x\", null, [], {\"index\": 4, \"stepCount\": 2}, true]}");
    QCOMPARE(session->stages().size(), 1);
    const SessionStage &stage = *session->stages().first();
    QCOMPARE(stage.index, 4);
    QCOMPARE(stage.stepCount, 2);
    QVERIFY(stage.action.isEmpty());
    QVERIFY(stage.steps().isEmpty());
}

void SessionFileTest::stepEntryThatIsNotAnObjectIsADefaultStep()
{
    const std::unique_ptr<TarveloSession> session =
        loadText("{\"stages\": [{\"steps\": [5, {\"s\": 2, \"b\": 4, \"v\": true, \"r\": 300, "
                 "\"t\": 500}]}]}");
    const SessionStage &stage = *session->stages().first();
    QCOMPARE(stage.steps().size(), 2);
    const SessionStep &defaults = *stage.steps().first();
    QCOMPARE(defaults.s, 0);
    QCOMPARE(defaults.b, 9);
    QCOMPARE(defaults.b2, 9);
    QCOMPARE(defaults.v, false);
    QCOMPARE(defaults.r, 0);
    QCOMPARE(defaults.t, 0);
    QCOMPARE(defaults.d, 0);
    // The second step has no "b2" in the file: it stays 9, so the stored step is an error.
    QCOMPARE(stage.steps().at(1)->b2, 9);
    QCOMPARE(stage.missedCount(), 1);
    QCOMPARE(stage.errorCount(), 1);
}

void SessionFileTest::announcedStepCountIsKeptAsItIs()
{
    TarveloSession session;
    session.setStart(exampleStart());
    session.addStage(stage(
        2, 5, QStringLiteral("stop"),
        {step(1, 2, true, 100, 900), step(1, 2, true, 200, 900), step(1, 2, true, 300, 900)}));
    QTemporaryDir dir;
    QVERIFY(session.save(dir.path()));
    const std::unique_ptr<TarveloSession> back(TarveloSession::load(dir.filePath(ExampleName)));
    QCOMPARE(back->stages().first()->stepCount, 5);
    QCOMPARE(back->stages().first()->steps().size(), 3);
}

void SessionFileTest::saveCreatesAVanishedFolder()
{
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("Records/Иванов"));
    const std::unique_ptr<TarveloSession> session(exampleSession());
    QVERIFY(session->save(folder)); // no trailing slash: it is added
    QVERIFY(QFile::exists(folder + QLatin1Char('/') + ExampleName));
    QVERIFY(QDir(folder).removeRecursively());
    QVERIFY(session->save(folder + QLatin1Char('/')));
    QVERIFY(QFile::exists(folder + QLatin1Char('/') + ExampleName));
}

void SessionFileTest::sameSecondReplacesTheEarlierFile()
{
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> first(exampleSession());
    TarveloSession second;
    second.setStart(exampleStart());
    second.setScriptTitle(QStringLiteral("Second"));
    QVERIFY(first->save(dir.path()));
    QVERIFY(second.save(dir.path()));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList {ExampleName});
    const std::unique_ptr<TarveloSession> back(TarveloSession::load(dir.filePath(ExampleName)));
    QCOMPARE(back->scriptTitle(), QStringLiteral("Second"));
}

void SessionFileTest::saveIntoAFolderThatCannotExistFails()
{
    QTemporaryDir dir;
    // A plain file stands where the folder should be.
    const QString blocker = dir.filePath(QStringLiteral("Records"));
    QVERIFY(TestFiles::write(blocker, "not a folder"));
    const std::unique_ptr<TarveloSession> session(exampleSession());
    QVERIFY(!session->save(blocker));
    QCOMPARE(TestFiles::read(blocker), QByteArray("not a folder"));
}

void SessionFileTest::invalidStartIsNamedAfterNow()
{
    TarveloSession session;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    const QString name = session.fileName();
    const QDateTime after = QDateTime::currentDateTime().addSecs(1);
    QVERIFY(name.endsWith(QStringLiteral(".session")));
    const QDateTime stamp =
        QDateTime::fromString(name.chopped(8), QStringLiteral("yyyy.MM.dd-hh.mm.ss"));
    QVERIFY2(stamp.isValid(), qPrintable(name));
    QVERIFY(stamp >= before.addMSecs(-before.time().msec()) && stamp <= after);
}

QTEST_GUILESS_MAIN(SessionFileTest)
#include "tst_sessionfile.moc"
