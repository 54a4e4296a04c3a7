#include "AbstractMetaDescriptor.h"

#include "FileUtilities.h"
#include "SaturatedInt.h"
#include "StringMap.h"

#include <QDebug>
#include <QFile>
#include <QPoint>
#include <QPointF>
#include <QRegularExpression>
#include <QSize>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

const QString componentRoot = QStringLiteral("Component");

// Type names of the XML form, compared ignoring case.
bool isType(const AbstractMetaDescription *description, const char *type)
{
    return description->type().compare(QLatin1String(type), Qt::CaseInsensitive) == 0;
}

// A byte-sized number is stored by its value: QVariant::toString would give the character.
bool isByteNumber(const AbstractMetaDescription *description)
{
    return isType(description, "uchar") || isType(description, "char");
}

QString elementText(const AbstractMetaDescription *description, const QVariant &value)
{
    if (isByteNumber(description))
        return QString::number(value.toInt());
    if (isType(description, "QPoint"))
        return QStringLiteral("%1;%2").arg(value.toPoint().x()).arg(value.toPoint().y());
    if (isType(description, "QPointF")) {
        const QPointF point = value.toPointF();
        return QString::number(point.x(), 'g', 6) + QLatin1Char(';')
            + QString::number(point.y(), 'g', 6);
    }
    if (isType(description, "QSize"))
        return QStringLiteral("%1;%2").arg(value.toSize().width()).arg(value.toSize().height());
    if (isType(description, "QByteArray"))
        return QString::fromLatin1(value.toByteArray().toBase64());
    return value.toString();
}

// A map key becomes an element name; one that isn't a valid name would make the whole file
// unreadable, so it is left out.
bool isElementName(const QString &key)
{
    static const QRegularExpression name(QStringLiteral("^[\\p{L}_][\\p{L}\\p{N}_.\\-]*$"));
    return name.match(key).hasMatch();
}

void writeStringMap(QXmlStreamWriter &writer, const QString &name, const StringMap &map)
{
    writer.writeStartElement(name);
    if (map.isEmpty())
        writer.writeCharacters(QString()); // an opening and a closing tag, as for other values
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (isElementName(it.key()))
            writer.writeTextElement(it.key(), it.value());
    }
    writer.writeEndElement();
}

// Reads the children of the current element as key and text, up to its end.
bool readStringMap(QXmlStreamReader &reader, StringMap *map)
{
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            return true;
        if (reader.isStartElement()) {
            const QString key = reader.name().toString();
            const QString value = reader.readElementText(QXmlStreamReader::SkipChildElements);
            if (reader.hasError())
                return false;
            map->insert(key, value);
        }
    }
    return false;
}

// "x;y" for points and sizes; with fewer than two parts the value is 0, 0.
QVariant pointOrSize(const AbstractMetaDescription *description, const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(';'));
    const double a = parts.size() >= 2 ? parts[0].toDouble() : 0;
    const double b = parts.size() >= 2 ? parts[1].toDouble() : 0;
    if (isType(description, "QPointF"))
        return QPointF(a, b);
    if (isType(description, "QPoint"))
        return QPoint(saturatedInt(a), saturatedInt(b));
    return QSize(saturatedInt(a), saturatedInt(b));
}

bool isPointOrSize(const AbstractMetaDescription *description)
{
    return isType(description, "QPointF") || isType(description, "QPoint")
        || isType(description, "QSize");
}

void startDocument(QXmlStreamWriter &writer, const QString &root)
{
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(root);
}

void endDocument(QXmlStreamWriter &writer)
{
    writer.writeEndElement();
    writer.writeEndDocument();
}

} // namespace

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

QList<AbstractMetaDescription *> AbstractMetaDescriptor::stored() const
{
    QList<AbstractMetaDescription *> result;
    for (AbstractMetaDescription *description : m_properties) {
        if (description->editable())
            result << description;
    }
    return result;
}

void AbstractMetaDescriptor::writeProperties(QXmlStreamWriter &writer, bool plainText) const
{
    const QList<AbstractMetaDescription *> descriptions = stored();
    for (const AbstractMetaDescription *description : descriptions) {
        const QVariant value = description->getValue();
        if (isType(description, "StringMap"))
            writeStringMap(writer, description->name(), value.value<StringMap>());
        else if (plainText && !isType(description, "QByteArray"))
            writer.writeTextElement(description->name(), value.toString());
        else
            writer.writeTextElement(description->name(), elementText(description, value));
    }
}

QString AbstractMetaDescriptor::saveToString() const
{
    QString text;
    QXmlStreamWriter writer(&text);
    startDocument(writer, getClassName());
    writeProperties(writer, false);
    endDocument(writer);
    return text;
}

bool AbstractMetaDescriptor::save(const QString &path) const
{
    return FileUtilities::writeAtomically(path, saveToString().toUtf8());
}

void AbstractMetaDescriptor::readElement(AbstractMetaDescription *description,
                                         QXmlStreamReader &reader, bool pointsAndSizes)
{
    if (isType(description, "StringMap")) {
        StringMap map;
        if (readStringMap(reader, &map))
            description->setValue(QVariant::fromValue(map));
        return;
    }
    // Stray child elements are skipped rather than ending the whole file.
    const QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
    if (reader.hasError())
        return; // a value cut off by damage is no value
    if (isType(description, "QByteArray"))
        description->setValue(QByteArray::fromBase64(text.toLatin1()));
    else if (pointsAndSizes && isPointOrSize(description))
        description->setValue(pointOrSize(description, text));
    else
        description->setValue(QVariant(text));
}

// One pass over the document with no regard for nesting: every element named like a stored
// property is read wherever it stands, and everything else, the root included, is passed over.
void AbstractMetaDescriptor::readProperties(QXmlStreamReader &reader, const QString &endTag,
                                            bool pointsAndSizes)
{
    while (!reader.atEnd()) {
        reader.readNext();
        if (!endTag.isEmpty() && reader.isEndElement() && reader.name() == endTag)
            return;
        if (!reader.isStartElement())
            continue;
        if (AbstractMetaDescription *description = storedByName(reader.name().toString()))
            readElement(description, reader, pointsAndSizes);
    }
}

bool AbstractMetaDescriptor::loadFromString(const QString &xml)
{
    QXmlStreamReader reader(xml);
    readProperties(reader, QString(), true);
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
    readProperties(reader, QString(), true);
    return true;
}

void AbstractMetaDescriptor::loadXmlContent(const QString &endTag, QXmlStreamReader &reader)
{
    readProperties(reader, endTag, false);
}

QString
AbstractMetaDescriptor::writeComponentsToString(const QList<AbstractMetaDescriptor *> &objects)
{
    QString text;
    QXmlStreamWriter writer(&text);
    startDocument(writer, componentRoot);
    for (const AbstractMetaDescriptor *object : objects) {
        writer.writeStartElement(object->getClassName());
        object->writeProperties(writer, true);
        writer.writeEndElement();
    }
    endDocument(writer);
    return text;
}

bool AbstractMetaDescriptor::writeComponentsToFile(const QList<AbstractMetaDescriptor *> &objects,
                                                   const QString &path)
{
    return FileUtilities::writeAtomically(path, writeComponentsToString(objects).toUtf8());
}

QVariantMap AbstractMetaDescriptor::valueMap() const
{
    QVariantMap result;
    const QList<AbstractMetaDescription *> descriptions = stored();
    for (const AbstractMetaDescription *description : descriptions)
        result.insert(description->name(), description->getValue());
    return result;
}

void AbstractMetaDescriptor::loadValueMap(const QVariantMap &values)
{
    const QList<AbstractMetaDescription *> descriptions = stored();
    for (AbstractMetaDescription *description : descriptions) {
        const auto it = values.constFind(description->name());
        if (it != values.cend())
            description->setValue(it.value());
    }
}

QJsonObject AbstractMetaDescriptor::saveToJson() const
{
    QVariantMap values = valueMap();
    const QList<AbstractMetaDescription *> descriptions = stored();
    for (const AbstractMetaDescription *description : descriptions) {
        if (isByteNumber(description))
            values[description->name()] = description->getValue().toInt();
    }
    return QJsonObject::fromVariantMap(values);
}

bool AbstractMetaDescriptor::saveToJsonFile(const QString &path) const
{
    return FileUtilities::writeAtomically(
        path, QJsonDocument(saveToJson()).toJson(QJsonDocument::Compact));
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
    if (json.isEmpty())
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isNull()) {
        qDebug() << "Failed to create JSON doc." << __func__;
        return false;
    }
    return loadFromJson(document);
}

bool AbstractMetaDescriptor::loadFromJson(const QJsonDocument &document)
{
    if (!document.isObject()) {
        qDebug() << "JSON is not an object." << __func__;
        return false;
    }
    return loadFromJson(document.object());
}

bool AbstractMetaDescriptor::loadFromJson(const QJsonObject &object)
{
    if (object.isEmpty()) {
        qDebug() << "JSON object is empty" << __func__;
        return false;
    }
    loadValueMap(object.toVariantMap());
    return true;
}
