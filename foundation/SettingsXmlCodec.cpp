#include "SettingsXmlCodec.h"

#include "AbstractMetaDescriptor.h"
#include "SaturatedInt.h"
#include "StringMap.h"

#include <QPoint>
#include <QPointF>
#include <QRegularExpression>
#include <QSize>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

const QString ComponentRoot = QStringLiteral("Component");

QString elementText(const AbstractMetaDescription *description, const QVariant &value)
{
    if (description->isByteNumber())
        return QString::number(value.toInt());
    if (description->hasType("QPoint"))
        return QStringLiteral("%1;%2").arg(value.toPoint().x()).arg(value.toPoint().y());
    if (description->hasType("QPointF")) {
        const QPointF point = value.toPointF();
        return QString::number(point.x(), 'g', 6) + QLatin1Char(';')
            + QString::number(point.y(), 'g', 6);
    }
    if (description->hasType("QSize"))
        return QStringLiteral("%1;%2").arg(value.toSize().width()).arg(value.toSize().height());
    if (description->hasType("QByteArray"))
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
    if (description->hasType("QPointF"))
        return QPointF(a, b);
    if (description->hasType("QPoint"))
        return QPoint(saturatedInt(a), saturatedInt(b));
    return QSize(saturatedInt(a), saturatedInt(b));
}

bool isPointOrSize(const AbstractMetaDescription *description)
{
    return description->hasType("QPointF") || description->hasType("QPoint")
        || description->hasType("QSize");
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

void writeProperties(QXmlStreamWriter &writer, const AbstractMetaDescriptor &object, bool plainText)
{
    const QList<AbstractMetaDescription *> descriptions = object.storedProperties();
    for (const AbstractMetaDescription *description : descriptions) {
        const QVariant value = description->getValue();
        if (description->hasType("StringMap"))
            writeStringMap(writer, description->name(), value.value<StringMap>());
        else if (plainText && !description->hasType("QByteArray"))
            writer.writeTextElement(description->name(), value.toString());
        else
            writer.writeTextElement(description->name(), elementText(description, value));
    }
}

void readElement(AbstractMetaDescription *description, QXmlStreamReader &reader,
                 bool pointsAndSizes)
{
    if (description->hasType("StringMap")) {
        StringMap map;
        if (readStringMap(reader, &map))
            description->setValue(QVariant::fromValue(map));
        return;
    }
    // Stray child elements are skipped rather than ending the whole file.
    const QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
    if (reader.hasError())
        return; // a value cut off by damage is no value
    if (description->hasType("QByteArray"))
        description->setValue(QByteArray::fromBase64(text.toLatin1()));
    else if (pointsAndSizes && isPointOrSize(description))
        description->setValue(pointOrSize(description, text));
    else
        description->setValue(QVariant(text));
}

} // namespace

QString SettingsXmlCodec::write(const AbstractMetaDescriptor &object)
{
    QString text;
    QXmlStreamWriter writer(&text);
    startDocument(writer, object.getClassName());
    writeProperties(writer, object, false);
    endDocument(writer);
    return text;
}

QString SettingsXmlCodec::writeComponents(const QList<AbstractMetaDescriptor *> &objects)
{
    QString text;
    QXmlStreamWriter writer(&text);
    startDocument(writer, ComponentRoot);
    for (const AbstractMetaDescriptor *object : objects) {
        writer.writeStartElement(object->getClassName());
        writeProperties(writer, *object, true);
        writer.writeEndElement();
    }
    endDocument(writer);
    return text;
}

// One pass over the document with no regard for nesting: every element named like a stored
// property is read wherever it stands, and everything else, the root included, is passed over.
void SettingsXmlCodec::read(AbstractMetaDescriptor &object, QXmlStreamReader &reader,
                            const QString &endTag, bool pointsAndSizes)
{
    while (!reader.atEnd()) {
        reader.readNext();
        if (!endTag.isEmpty() && reader.isEndElement() && reader.name() == endTag)
            return;
        if (!reader.isStartElement())
            continue;
        if (AbstractMetaDescription *description = object.storedByName(reader.name().toString()))
            readElement(description, reader, pointsAndSizes);
    }
}
