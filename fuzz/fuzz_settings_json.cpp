// The JSON reader of settings objects. Whatever it makes of the input must write out as JSON
// that reads back to the same object.
#include "FuzzSupport.h"
#include "SettingsFuzzing.h"

using namespace FuzzSupport;
using namespace SettingsFuzzing;

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietDebugOutput();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray json = bytes(data, size);
    forEachSettingsClass([&](auto type) {
        using Settings = typename decltype(type)::type;
        Settings &read = newSettings<Settings, 0>();
        read.loadFromJson(json);
        const QJsonObject written = read.saveToJson();
        Settings &again = newSettings<Settings, 1>();
        again.loadFromJson(written);
        checkEqual(QJsonDocument(written).toJson(), QJsonDocument(again.saveToJson()).toJson(),
                   "written settings read back to the same JSON");
    });
    return 0;
}
