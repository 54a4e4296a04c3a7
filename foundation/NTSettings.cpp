#include "NTSettings.h"

#include "FileUtilities.h"
#include "MetaDescriptor.h"
#include "PropertyCapabilities.h"
#include "StringMap.h"
#include "WriteFailures.h"

#include <QFileInfo>
#include <QScopedValueRollback>

NTSettings::NTSettings(const QString &filePath, bool autoSave, QObject *parent,
                       NTSettingsFormat format)
    : AbstractSettings(parent)
    , m_autoSave(autoSave)
    , m_format(format)
{
    registerStringMapType();
    setFilepath(filePath);
}

MetaDescriptor *NTSettings::descriptor() const
{
    // Built on first use, when the subclass and its properties exist.
    if (!m_descriptor) {
        auto *self = const_cast<NTSettings *>(this);
        m_descriptor = new MetaDescriptor(self);
        m_descriptor->set(self);
    }
    return m_descriptor;
}

AbstractMetaDescriptor *NTSettings::metaDescriptor()
{
    return descriptor();
}

void NTSettings::setFilepath(const QString &path)
{
    if (!path.isEmpty()) {
        FileUtilities::createIfNotExists(QFileInfo(path).absolutePath());
        m_filePath = path;
    }
    emit filePathChanged();
}

void NTSettings::changedProperty(const QString &name)
{
    emit propertyChanged(name);
    if (m_autoSave && !m_loading)
        save();
}

bool NTSettings::reload()
{
    if (m_filePath.isEmpty())
        return false;
    {
        const QScopedValueRollback<bool> quiet(m_loading, true);
        if (m_format == XML)
            descriptor()->load(m_filePath);
        else
            descriptor()->loadFromJsonFile(m_filePath);
    }
    emit reloaded();
    return true;
}

bool NTSettings::save()
{
    bool written = true;
    if (!m_filePath.isEmpty()) {
        QString error;
        written = m_format == XML ? descriptor()->save(m_filePath, &error)
                                  : descriptor()->saveToJsonFile(m_filePath, &error);
        // Every change saves the whole file: one message for a folder that stays unwritable.
        if (!written && !m_saveFailing)
            WriteFailures::report(m_filePath, error);
        m_saveFailing = !written;
    }
    emit saved();
    return written;
}

void NTSettings::loadDefaults()
{
    descriptor()->defaults();
    emit reloaded();
}

void NTSettings::applyDeclaredDefaults()
{
    const QScopedValueRollback<bool> quiet(m_loading, true);
    const QList<AbstractMetaDescription *> descriptions = descriptor()->getProperties();
    for (AbstractMetaDescription *description : descriptions) {
        if (description->hasDefault())
            description->setDefault();
    }
}

void NTSettings::resetToDeclaredDefault(const QString &name)
{
    AbstractMetaDescription *description = descriptor()->propertyByName(name);
    if (description && description->hasDefault())
        description->setTextValue(description->defaultValue());
}

QString NTSettings::saveToString() const
{
    return descriptor()->saveToString();
}

bool NTSettings::loadFromXMLString(const QString &xml)
{
    descriptor()->loadFromString(xml);
    emit reloaded();
    return true;
}

QJsonObject NTSettings::saveToJson() const
{
    return descriptor()->saveToJson();
}

QString NTSettings::saveToJsonString(QJsonDocument::JsonFormat format) const
{
    return QString::fromUtf8(QJsonDocument(saveToJson()).toJson(format));
}

QString NTSettings::saveToJsonByteArray() const
{
    return saveToJsonString(QJsonDocument::Compact);
}

bool NTSettings::loadFromJson(const QByteArray &json)
{
    const bool loaded = descriptor()->loadFromJson(json);
    if (loaded)
        emit reloaded();
    return loaded;
}

bool NTSettings::loadFromJson(const QJsonDocument &document)
{
    const bool loaded = descriptor()->loadFromJson(document);
    if (loaded)
        emit reloaded();
    return loaded;
}

bool NTSettings::loadFromJson(const QJsonObject &object)
{
    const bool loaded = descriptor()->loadFromJson(object);
    if (loaded)
        emit reloaded();
    return loaded;
}

bool NTSettings::loadFromJson(const QString &json)
{
    return loadFromJson(json.toUtf8());
}

QVariantMap NTSettings::getQVariantMap() const
{
    return descriptor()->valueMap();
}

void NTSettings::loadFromQVariantMap(const QVariantMap &values)
{
    descriptor()->loadValueMap(values);
}

QStringList NTSettings::getPropertiesNames() const
{
    QStringList names;
    const QList<AbstractMetaDescription *> descriptions = descriptor()->getProperties();
    for (const AbstractMetaDescription *description : descriptions)
        names << description->name();
    return names;
}

AbstractMetaDescription *NTSettings::getPropertyByName(const QString &name) const
{
    const QList<AbstractMetaDescription *> descriptions = descriptor()->getProperties();
    for (AbstractMetaDescription *description : descriptions) {
        if (description->name().compare(name, Qt::CaseInsensitive) == 0)
            return description;
    }
    return nullptr;
}

bool NTSettings::containsProperty(const QString &name) const
{
    return descriptor()->propertyByName(name) != nullptr;
}

QVariant NTSettings::getValue(const QString &name) const
{
    const AbstractMetaDescription *description = descriptor()->propertyByName(name);
    return description ? description->getValue() : QVariant();
}

bool NTSettings::setValue(const QString &name, const QVariant &value)
{
    return descriptor()->setValue(name, value);
}

QString NTSettings::getTextValue(const QString &name) const
{
    return getValue(name).toString();
}

bool NTSettings::setTextValue(const QString &name, const QString &text)
{
    return descriptor()->setTextValue(name, text);
}

QString NTSettings::getClassName() const
{
    return QString::fromLatin1(metaObject()->className());
}

QJsonObject NTSettings::getPropertyCapabilities(const AbstractMetaDescription *description) const
{
    return PropertyCapabilities::of(description);
}

QString NTSettings::getPropertyCapabilitiesString(const AbstractMetaDescription *description) const
{
    return PropertyCapabilities::text(description);
}

QJsonArray NTSettings::getAllCapabilitiesJson(bool all) const
{
    QJsonArray result;
    const QList<AbstractMetaDescription *> descriptions = descriptor()->getProperties();
    for (const AbstractMetaDescription *description : descriptions) {
        if (all || (description->visible() && description->editable()))
            result << PropertyCapabilities::of(description);
    }
    return result;
}

QVariantList NTSettings::getAllCapabilities(bool all) const
{
    return getAllCapabilitiesJson(all).toVariantList();
}

bool NTSettings::saveListFromString(const QList<NTSettings *> &objects, const QString &path)
{
    QList<AbstractMetaDescriptor *> descriptors;
    for (const NTSettings *object : objects)
        descriptors << object->descriptor();
    return AbstractMetaDescriptor::writeComponentsToFile(descriptors, path);
}

bool NTSettings::toogleItemInStringList(QStringList &list, const QString &item, bool add)
{
    if (!add)
        return list.removeAll(item) > 0;
    if (list.contains(item))
        return false;
    list << item;
    return true;
}
