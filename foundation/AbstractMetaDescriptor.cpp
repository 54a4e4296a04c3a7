#include "AbstractMetaDescriptor.h"

#include "FileUtilities.h"
#include "SettingsJsonCodec.h"
#include "SettingsXmlCodec.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>

AbstractMetaDescriptor::AbstractMetaDescriptor(QObject *parent)
    : QObject(parent)
{
}

AbstractMetaDescription *AbstractMetaDescriptor::at(int index) const
{
    return m_properties.value(index, nullptr);
}

AbstractMetaDescription *AbstractMetaDescriptor::propertyByName(const QString &name) const
{
    return m_byName.value(name, nullptr);
}

QMap<QString, QString> AbstractMetaDescriptor::getPropertiesNameAndType() const
{
    QMap<QString, QString> result;
    for (const AbstractMetaDescription *description : m_properties)
        result.insert(description->name(), description->type());
    return result;
}

bool AbstractMetaDescriptor::setValue(const QString &name, const QVariant &value)
{
    for (AbstractMetaDescription *description : qAsConst(m_properties)) {
        if (description->name().compare(name, Qt::CaseInsensitive) == 0)
            return description->setValue(value);
    }
    return false;
}

bool AbstractMetaDescriptor::setTextValue(const QString &name, const QString &text)
{
    for (AbstractMetaDescription *description : qAsConst(m_properties)) {
        if (description->name().compare(name, Qt::CaseInsensitive) == 0)
            return description->setTextValue(text);
    }
    return false;
}

void AbstractMetaDescriptor::defaults()
{
    for (AbstractMetaDescription *description : qAsConst(m_properties)) {
        if (description->editable() && description->hasDefault())
            description->setDefault();
    }
}

QList<AbstractMetaDescription *> AbstractMetaDescriptor::displayOrder() const
{
    QList<AbstractMetaDescription *> sorted = m_properties;
    std::stable_sort(sorted.begin(), sorted.end(), &AbstractMetaDescription::displaysBefore);
    return sorted;
}

QStringList AbstractMetaDescriptor::categories() const
{
    QStringList result;
    const QList<AbstractMetaDescription *> sorted = displayOrder();
    for (const AbstractMetaDescription *description : sorted) {
        if (description->visible() && !result.contains(description->category()))
            result << description->category();
    }
    return result;
}

void AbstractMetaDescriptor::clear()
{
    qDeleteAll(m_properties);
    m_properties.clear();
    m_byName.clear();
}

void AbstractMetaDescriptor::append(AbstractMetaDescription *description)
{
    m_properties << description;
    m_byName.insert(description->name(), description);
}

AbstractMetaDescription *AbstractMetaDescriptor::storedByName(const QString &name) const
{
    AbstractMetaDescription *description = propertyByName(name);
    return description && description->editable() ? description : nullptr;
}

QList<AbstractMetaDescription *> AbstractMetaDescriptor::storedProperties() const
{
    QList<AbstractMetaDescription *> result;
    for (AbstractMetaDescription *description : m_properties) {
        if (description->editable())
            result << description;
    }
    return result;
}

QString AbstractMetaDescriptor::saveToString() const
{
    return SettingsXmlCodec::write(*this);
}

bool AbstractMetaDescriptor::save(const QString &path, QString *error) const
{
    return FileUtilities::writeAtomically(path, saveToString().toUtf8(), error);
}

bool AbstractMetaDescriptor::loadFromString(const QString &xml)
{
    QXmlStreamReader reader(xml);
    SettingsXmlCodec::read(*this, reader, QString(), true);
    return true;
}

bool AbstractMetaDescriptor::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // From the bytes, so that a file saved in another encoding is still decoded by its prolog.
    return loadFromBytes(file.readAll());
}

bool AbstractMetaDescriptor::loadFromBytes(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    SettingsXmlCodec::read(*this, reader, QString(), true);
    return true;
}

void AbstractMetaDescriptor::loadXmlContent(const QString &endTag, QXmlStreamReader &reader)
{
    SettingsXmlCodec::read(*this, reader, endTag, false);
}

QString
AbstractMetaDescriptor::writeComponentsToString(const QList<AbstractMetaDescriptor *> &objects)
{
    return SettingsXmlCodec::writeComponents(objects);
}

bool AbstractMetaDescriptor::writeComponentsToFile(const QList<AbstractMetaDescriptor *> &objects,
                                                   const QString &path)
{
    return FileUtilities::writeAtomically(path, writeComponentsToString(objects).toUtf8());
}

QVariantMap AbstractMetaDescriptor::valueMap() const
{
    return SettingsJsonCodec::valueMap(*this);
}

void AbstractMetaDescriptor::loadValueMap(const QVariantMap &values)
{
    SettingsJsonCodec::loadValueMap(*this, values);
}

QJsonObject AbstractMetaDescriptor::saveToJson() const
{
    return SettingsJsonCodec::saveToJson(*this);
}

bool AbstractMetaDescriptor::saveToJsonFile(const QString &path, QString *error) const
{
    return FileUtilities::writeAtomically(
        path, QJsonDocument(saveToJson()).toJson(QJsonDocument::Compact), error);
}

bool AbstractMetaDescriptor::loadFromJsonFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return loadFromJson(QString::fromUtf8(file.readAll()).toUtf8());
}

bool AbstractMetaDescriptor::loadFromJson(const QByteArray &json)
{
    return SettingsJsonCodec::loadFromJson(*this, json);
}

bool AbstractMetaDescriptor::loadFromJson(const QJsonDocument &document)
{
    return SettingsJsonCodec::loadFromJson(*this, document);
}

bool AbstractMetaDescriptor::loadFromJson(const QJsonObject &object)
{
    return SettingsJsonCodec::loadFromJson(*this, object);
}
