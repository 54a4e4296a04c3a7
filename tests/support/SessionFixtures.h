#pragma once

#include "data/TarveloSession.h"
#include "support/TestFiles.h"

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

} // namespace SessionFixtures
