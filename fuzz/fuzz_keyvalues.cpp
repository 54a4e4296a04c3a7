// The key=value parser behind script files and reaction reports.
#include "FuzzSupport.h"
#include "data/KeyValueText.h"

using namespace FuzzSupport;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = text(data, size);
    const auto map = parseKeyValues(input, QStringLiteral(";"), QStringLiteral("="));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        // Every entry came from one piece: neither part can hold the separators.
        check(!it.key().isEmpty() && !it.key().contains(QLatin1Char(';'))
                  && !it.value().contains(QLatin1Char('=')),
              "an entry holds no separator and has a key");
    }
    const QString threshold = validThreshold(input);
    check(threshold.isEmpty() || (threshold.toInt() >= 0 && threshold.toInt() <= 10),
          "a threshold is empty or 0 to 10");
    return 0;
}
