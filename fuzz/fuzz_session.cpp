// The .session reader. Whatever it makes of the input must write out as a file that reads
// back to the same JSON, with the same values derived for every stage.
#include "FuzzSupport.h"
#include "data/TarveloSession.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QScopedPointer>

#include <cmath>

using namespace FuzzSupport;

namespace {

bool sameValue(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool sameDerivedValues(const SessionStage *a, const SessionStage *b)
{
    return a->correctCount() == b->correctCount() && a->lateCount() == b->lateCount()
        && a->errorCount() == b->errorCount() && a->missedCount() == b->missedCount()
        && sameValue(a->speedStep(), b->speedStep())
        && sameValue(a->reactionMean(), b->reactionMean())
        && sameValue(a->reactionVariance(), b->reactionVariance())
        && sameValue(a->reactionSigma(), b->reactionSigma());
}

bool requiredButtonsAgree(const SessionStage *stage)
{
    for (const SessionStep *step : stage->steps()) {
        if (step->b2 != requiredButton(step->s))
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietDebugOutput();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QScopedPointer<TarveloSession> session(TarveloSession::fromJson(bytes(data, size)));
    const QJsonObject json = session->toJson();
    // The bytes that save writes.
    const QByteArray file = QJsonDocument(json).toJson(QJsonDocument::Indented);
    QScopedPointer<TarveloSession> again(TarveloSession::fromJson(file));
    checkEqual(file, QJsonDocument(again->toJson()).toJson(QJsonDocument::Indented),
               "a written session reads back to the same JSON");

    const QList<SessionStage *> stages = session->stages();
    const QList<SessionStage *> stagesAgain = again->stages();
    check(stages.size() == stagesAgain.size(), "a written session keeps its stages");
    // A file may name a required button of its own, which the reader takes and the writer
    // replaces by the stimulus' one; where they agree, the judgement must survive the file.
    for (int i = 0; i < stages.size(); ++i) {
        if (requiredButtonsAgree(stages.at(i)))
            check(sameDerivedValues(stages.at(i), stagesAgain.at(i)),
                  "a stage read back derives the same values");
    }
    // Named by its start, whatever date the file holds: a name stays inside its folder.
    check(!session->fileName().contains(QLatin1Char('/')), "a session file name has no folder");
    return 0;
}
