#pragma once

#include <QVariantMap>

class AbstractMetaDescriptor;
class QByteArray;
class QJsonDocument;
class QJsonObject;

// The JSON form of settings objects: one object with the stored values by property name. Keys
// of unknown properties are passed over, and properties without a key keep their values.
class SettingsJsonCodec
{
public:
    static QVariantMap valueMap(const AbstractMetaDescriptor &object);
    static void loadValueMap(AbstractMetaDescriptor &object, const QVariantMap &values);

    static QJsonObject saveToJson(const AbstractMetaDescriptor &object);
    // False, with a debug line and the object untouched, for empty or broken text, a document
    // that isn't an object, and an empty object.
    static bool loadFromJson(AbstractMetaDescriptor &object, const QByteArray &json);
    static bool loadFromJson(AbstractMetaDescriptor &object, const QJsonDocument &document);
    static bool loadFromJson(AbstractMetaDescriptor &object, const QJsonObject &json);
};
