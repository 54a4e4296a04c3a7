// The key=value parser behind script files and reaction reports.
#include "data/KeyValueText.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    const auto map = parseKeyValues(text, QStringLiteral(";"), QStringLiteral("="));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        // Every entry came from one piece: neither part can hold the separators.
        if (it.key().contains(QLatin1Char(';')) || it.value().contains(QLatin1Char('='))
            || it.key().isEmpty())
            __builtin_trap();
    }
    validThreshold(text);
    return 0;
}
