#include "SettingsJsonCodec.h"

#include "AbstractMetaDescriptor.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

QVariantMap SettingsJsonCodec::valueMap(const AbstractMetaDescriptor &object)
{
    QVariantMap result;
    const QList<AbstractMetaDescription *> descriptions = object.storedProperties();
    for (const AbstractMetaDescription *description : descriptions)
        result.insert(description->name(), description->getValue());
    return result;
}

void SettingsJsonCodec::loadValueMap(AbstractMetaDescriptor &object, const QVariantMap &values)
{
    const QList<AbstractMetaDescription *> descriptions = object.storedProperties();
    for (AbstractMetaDescription *description : descriptions) {
        const auto it = values.constFind(description->name());
        if (it != values.cend())
            description->setValue(it.value());
    }
}

QJsonObject SettingsJsonCodec::saveToJson(const AbstractMetaDescriptor &object)
{
    QVariantMap values = valueMap(object);
    const QList<AbstractMetaDescription *> descriptions = object.storedProperties();
    for (const AbstractMetaDescription *description : descriptions) {
        if (description->isByteNumber())
            values[description->name()] = description->getValue().toInt();
    }
    return QJsonObject::fromVariantMap(values);
}

bool SettingsJsonCodec::loadFromJson(AbstractMetaDescriptor &object, const QByteArray &json)
{
    if (json.isEmpty())
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isNull()) {
        qDebug() << "Failed to create JSON doc." << __func__;
        return false;
    }
    return loadFromJson(object, document);
}

bool SettingsJsonCodec::loadFromJson(AbstractMetaDescriptor &object, const QJsonDocument &document)
{
    if (!document.isObject()) {
        qDebug() << "JSON is not an object." << __func__;
        return false;
    }
    return loadFromJson(object, document.object());
}

bool SettingsJsonCodec::loadFromJson(AbstractMetaDescriptor &object, const QJsonObject &json)
{
    if (json.isEmpty()) {
        qDebug() << "JSON object is empty" << __func__;
        return false;
    }
    loadValueMap(object, json.toVariantMap());
    return true;
}
