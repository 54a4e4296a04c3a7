#pragma once

// What the two settings readers' targets share: the classes they read into, none of which may
// write a file while it is fuzzed.

#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "support/ExampleSettings.h"

#include <memory>

namespace SettingsFuzzing {

template<class T>
struct Type
{
    using type = T;
};

// Calls read once for each settings class, with a Type<Class>: the program's two, and the test
// suite's class with the value types that those two don't use (points, sizes, bytes, a map, a
// colour, a byte-sized number).
template<class Read>
void forEachSettingsClass(Read read)
{
    read(Type<TarveloSettings>());
    read(Type<TarveloUser>());
    read(Type<ExampleSettings>());
}

// An object of the class with the values of a new one. Building an object reflects on its whole
// declaration, which costs far more than reading a file, so each class and slot has one object
// for the whole run that is set back to the values it was born with at each call.
template<class Settings, int Slot>
Settings &newSettings()
{
    static const std::unique_ptr<Settings> object = [] {
        auto created = std::make_unique<Settings>();
        created->setAutoSave(false);
        return created;
    }();
    static const QVariantMap initial = object->getQVariantMap();
    static const QString initialXml = object->saveToString();
    object->loadFromQVariantMap(initial);
    // A reset that missed a value would make findings depend on the inputs before them.
    if (object->saveToString() != initialXml)
        std::abort();
    return *object;
}

} // namespace SettingsFuzzing
