// The .script reader: whatever it accepts must write out as a file that reads back the same,
// and must go to the box as frames within the write limit.
#include "FuzzSupport.h"
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"

#include <QScopedPointer>

using namespace FuzzSupport;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QScopedPointer<TarveloScript> script(TarveloScript::fromText(text(data, size)));
    const QString written = script->toText();
    QScopedPointer<TarveloScript> again(TarveloScript::fromText(written));
    checkEqual(written, again->toText(), "a written script reads back to the same text");

    const QVector<DeviceProtocol::UploadCommand> commands =
        DeviceProtocol::uploadCommands(*script, -1);
    for (const DeviceProtocol::UploadCommand &command : commands) {
        QByteArray frame;
        const QList<QByteArray> pieces = DeviceProtocol::framePieces(command.text);
        for (const QByteArray &piece : pieces) {
            check(!piece.isEmpty() && piece.size() <= DeviceProtocol::ChunkBytes,
                  "a write carries at most the chunk size");
            frame += piece;
        }
        check(frame == '{' + command.text.toUtf8() + '}', "the pieces make up the frame");
    }
    return 0;
}
