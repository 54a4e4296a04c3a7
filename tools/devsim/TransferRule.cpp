#include "TransferRule.h"

#include "data/ScriptStage.h"
#include "device/DeviceProtocol.h"

namespace {
struct Move
{
    const char *key;
    const QString &action;
    int offset;
};

// In wire order, which is also the order that breaks ties.
const Move Moves[] = {
    {"stop", DeviceProtocol::Action::Stop, 0},    {"s-2", DeviceProtocol::Action::BackTwo, -2},
    {"s-1", DeviceProtocol::Action::BackOne, -1}, {"s-0", DeviceProtocol::Action::Repeat, 0},
    {"s+1", DeviceProtocol::Action::NextOne, 1},  {"s+2", DeviceProtocol::Action::NextTwo, 2},
};

const Move *findMove(const QString &key)
{
    for (const Move &move : Moves) {
        if (key == QLatin1String(move.key))
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
        const QString key = QLatin1String(move.key);
        bool ok = false;
        const int threshold = stage.value(key).toInt(&ok);
        if (ok && threshold <= errors && threshold > bestThreshold) {
            best = key;
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
    const Move *move = findMove(key.isEmpty() ? QStringLiteral("s+1") : key);
    if (move->offset == 0 && move->action == DeviceProtocol::Action::Stop)
        return {move->action, ScriptEnds};

    int next = index + move->offset;
    if (move->offset <= 0) {
        next = qMax(0, next);
        if (plays.value(next) > qMax(0, stages.at(next)->maxRepeats))
            return {DeviceProtocol::Action::MaxRepeats,
                    index + 1 < stages.size() ? index + 1 : ScriptEnds};
    }
    return {move->action, next < stages.size() ? next : ScriptEnds};
}
