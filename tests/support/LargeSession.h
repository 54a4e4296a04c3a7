#pragma once

#include "support/SessionFixtures.h"

#include <QRandomGenerator>

namespace SessionFixtures {

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
