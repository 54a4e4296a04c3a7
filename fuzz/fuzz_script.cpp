// The .script reader: whatever it accepts must write out as a file that reads back the same.
#include "data/TarveloScript.h"

#include <QScopedPointer>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    QScopedPointer<TarveloScript> script(TarveloScript::fromText(text));
    const QString written = script->toText();
    QScopedPointer<TarveloScript> again(TarveloScript::fromText(written));
    if (again->toText() != written)
        __builtin_trap();
    return 0;
}
