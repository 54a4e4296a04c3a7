#pragma once

#include "data/TarveloSession.h"
#include "support/TestFiles.h"

#include <QRandomGenerator>

// Hand-built sessions shared by the session tests. Every derived value they lead to is worked
// out by hand in the tests and golden files that use them.
namespace SessionFixtures {

inline SessionStep *step(int s, int b, bool v, int r, int t, int d = 1000)
{
    auto *result = new SessionStep;
    result->s = s;
    result->b = b;
    result->b2 = requiredButton(s);
    result->v = v;
    result->r = r;
    result->t = t;
    result->d = d;
    return result;
}

inline SessionStage *stage(int index, int stepCount, const QString &action,
                           const QList<SessionStep *> &steps)
{
    auto *result = new SessionStage;
    result->index = index;
    result->stepCount = stepCount;
    result->action = action;
    for (SessionStep *s : steps)
        result->addStep(s);
    return result;
}

inline QDateTime exampleStart()
{
    return QDateTime(QDate(2024, 3, 5), QTime(14, 20, 31));
}

// Four stage runs: a stage of three (correct, error, missed), a one-step stage that ends in a
// repeat, its repeat with no steps at all, and a stage still running with no transfer yet
// (one correct step, one wrong control exactly at the allowed time).
inline TarveloSession *reportSession()
{
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Проба"));
    session->setUserName(QStringLiteral("Иванов Иван Иванович"));
    session->setStart(exampleStart());
    session->addStage(stage(0, 3, QStringLiteral("+1"),
                            {step(3, 3, true, 400, 1000), step(0, 1, true, 500, 1000),
                             step(13, 10, false, 1500, 1500)}));
    session->addStage(stage(1, 1, QStringLiteral("repeat"), {step(2, 4, true, 600, 500)}));
    session->addStage(stage(1, 1, QStringLiteral("maxRepeats"), {}));
    session->addStage(
        stage(2, 4, QString(), {step(10, 7, true, 300, 800), step(11, 7, true, 800, 800)}));
    return session;
}

// A long finished session of stageRuns stage runs with stepsPerStage steps each, the same for
// every call: random stimuli, reactions mostly with the right control, every twentieth missed.
inline TarveloSession *largeSession(int stageRuns, int stepsPerStage)
{
    QRandomGenerator random(quint32(stageRuns * stepsPerStage));
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Длинный сценарий"));
    session->setUserName(QStringLiteral("Иванов Иван Иванович"));
    session->setStart(exampleStart());
    session->setEnd(exampleStart().addSecs(2500));
    const char *actions[] = {"+1", "+2", "-1", "-2", "repeat", "maxRepeats", "stop"};
    for (int i = 0; i < stageRuns; ++i) {
        auto *stage = new SessionStage;
        stage->index = i / 3;
        stage->stepCount = stepsPerStage;
        stage->action = QString::fromLatin1(actions[random.bounded(7)]);
        for (int j = 0; j < stepsPerStage; ++j) {
            auto *step = new SessionStep;
            step->s = int(random.bounded(18));
            step->b2 = requiredButton(step->s);
            step->b = random.bounded(4) == 0 ? int(random.bounded(11)) : step->b2;
            step->v = random.bounded(20) != 0;
            step->r = int(random.bounded(100, 1500));
            step->t = int(random.bounded(5, 15)) * 100;
            step->d = int(random.bounded(5, 20)) * 100;
            stage->addStep(step);
        }
        session->addStage(stage);
    }
    session->setFinished(true);
    return session;
}

} // namespace SessionFixtures
