#include "TransferRule.h"

#include "data/ScriptStage.h"
#include "data/StageTransfer.h"

using namespace StageTransfer;

namespace {
struct Move
{
    const QString &key;
    const QString &action;
    int offset;
};

// In wire order, which is also the order that breaks ties.
const Move Moves[] = {
    {Key::Stop, Action::Stop, 0},        {Key::BackTwo, Action::BackTwo, -2},
    {Key::BackOne, Action::BackOne, -1}, {Key::Repeat, Action::Repeat, 0},
    {Key::NextOne, Action::NextOne, 1},  {Key::NextTwo, Action::NextTwo, 2},
};

const Move *findMove(const QString &key)
{
    for (const Move &move : Moves) {
        if (key == move.key)
            return &move;
    }
    return nullptr;
}
} // namespace

QString TransferRule::applicableTransfer(const ScriptStage &stage, int errors)
{
    QString best;
    int bestThreshold = -1;
    for (const Move &move : Moves) {
        bool ok = false;
        const int threshold = stage.value(move.key).toInt(&ok);
        if (ok && threshold <= errors && threshold > bestThreshold) {
            best = move.key;
            bestThreshold = threshold;
        }
    }
    return best;
}

TransferRule::Decision TransferRule::decide(const QVector<const ScriptStage *> &stages, int index,
                                            int errors, const QVector<int> &plays)
{
    const QString key = applicableTransfer(*stages.at(index), errors);
    // When nothing applies the box goes on to the next stage.
    const Move *move = findMove(key.isEmpty() ? Key::NextOne : key);
    if (move->offset == 0 && move->action == Action::Stop)
        return {move->action, ScriptEnds};

    int next = index + move->offset;
    if (move->offset <= 0) {
        next = qMax(0, next);
        if (plays.value(next) > qMax(0, stages.at(next)->maxRepeats))
            return {Action::MaxRepeats, index + 1 < stages.size() ? index + 1 : ScriptEnds};
    }
    return {move->action, next < stages.size() ? next : ScriptEnds};
}
