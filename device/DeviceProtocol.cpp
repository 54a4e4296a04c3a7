#include "DeviceProtocol.h"

#include "data/TarveloScript.h"

namespace DeviceProtocol {

QList<QByteArray> framePieces(const QString &text)
{
    const QByteArray frame = QByteArray(1, '{') + text.toUtf8() + '}';
    QList<QByteArray> pieces;
    for (int from = 0; from < frame.size(); from += ChunkBytes)
        pieces << frame.mid(from, ChunkBytes);
    return pieces;
}

QVector<UploadCommand> uploadCommands(const TarveloScript &script, int saveSlot)
{
    QVector<UploadCommand> commands;
    const QStringList entries = script.headerText().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &entry : entries)
        commands.append({ScriptHeader + entry + QLatin1Char(';')});
    const QList<ScriptStage *> stages = script.stages();
    for (const ScriptStage *stage : stages) {
        commands.append({StartAddStage + stage->headerText()});
        for (const ScriptStep *step : stage->steps)
            commands.append({AddItem + step->wireText()});
        commands.append({StopAddStage});
    }
    if (saveSlot >= 0)
        commands.append({SaveScript + QString::number(saveSlot), 0});
    return commands;
}

int uploadTotal(const TarveloScript &script)
{
    int steps = 0;
    const QList<ScriptStage *> stages = script.stages();
    for (const ScriptStage *stage : stages)
        steps += stage->steps.size();
    return 2 * stages.size() + 1 + steps;
}

State parseState(const QString &body)
{
    State state;
    const QStringList pieces = body.split(QLatin1Char(';'));
    const QString &lamps = pieces.constFirst();
    for (const QChar c : lamps)
        state.lamps << (c == QLatin1Char('1'));
    if (pieces.size() > 1 && pieces.at(1).startsWith(ButtonsPiece)) {
        state.hasButtons = true;
        const QString buttons = pieces.at(1).mid(ButtonsPiece.size());
        for (int i = 0; i < ReportedButtons; ++i)
            state.buttons << (i < buttons.size() && buttons.at(i) == QLatin1Char('1'));
    }
    return state;
}

bool marksMissingSerialNumber(const QString &message)
{
    return message == QLatin1String("sn=000000") || message.startsWith(QLatin1String("sn=yy"));
}

bool optionIsOn(const QString &message, const QString &option)
{
    return message.contains(option + QLatin1String("=1"));
}

} // namespace DeviceProtocol
