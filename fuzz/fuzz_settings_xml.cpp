// The XML reader of settings files (Settings.xml, User.xml), from a string as loadFromXMLString
// takes it and from the bytes of a file, whose prolog may name another encoding. Whatever a
// reader makes of the input must write out as XML that reads back to the same text.
#include "FuzzSupport.h"
#include "SettingsFuzzing.h"
#include "foundation/AbstractMetaDescriptor.h"

using namespace FuzzSupport;
using namespace SettingsFuzzing;

namespace {

template<class Settings>
void checkRoundTrip(const Settings &read)
{
    const QString written = read.saveToString();
    Settings &again = newSettings<Settings, 1>();
    again.loadFromXMLString(written);
    checkEqual(written, again.saveToString(), "written settings read back to the same XML");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietDebugOutput();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file = bytes(data, size);
    const QString xml = text(data, size);
    forEachSettingsClass([&](auto type) {
        using Settings = typename decltype(type)::type;
        Settings &fromString = newSettings<Settings, 0>();
        fromString.loadFromXMLString(xml);
        checkRoundTrip(fromString);

        Settings &fromFile = newSettings<Settings, 0>();
        fromFile.metaDescriptor()->loadFromBytes(file);
        checkRoundTrip(fromFile);
    });
    return 0;
}
