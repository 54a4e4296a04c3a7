#include "MetaDescription.h"

#include "SaturatedInt.h"
#include "TextHelper.h"

#include <QColor>
#include <QDateTime>
#include <QDebug>
#include <QPoint>
#include <QPointF>
#include <QRegularExpression>
#include <QSize>

namespace {

const QString enumTypeName = QStringLiteral("Enum");
constexpr int enumTypeId = 2;

bool isNumberType(const QString &type)
{
    return type == QLatin1String("int") || type == QLatin1String("float")
        || type == QLatin1String("double");
}

QString colourDefault(const QString &raw)
{
    static const QRegularExpression hex(QStringLiteral("(\\#[a-fA-F0-9]+)"));
    static const QRegularExpression named(QStringLiteral("Qt::(\\w+)"));
    static const QRegularExpression quoted(QStringLiteral("\\(\\\"(\\w+)\\\"\\)"));
    QRegularExpressionMatch match = hex.match(raw);
    if (match.hasMatch())
        return match.captured(0);
    match = named.match(raw);
    if (!match.hasMatch())
        match = quoted.match(raw);
    if (match.hasMatch())
        return QColor(match.captured(1)).name();
    return raw;
}

} // namespace

MetaDescription::MetaDescription(QObject *parent)
    : AbstractMetaDescription(parent)
{
}

QMetaProperty MetaDescription::property() const
{
    return m_object ? m_object->metaObject()->property(m_propertyIndex) : QMetaProperty();
}

bool MetaDescription::declared(const QMetaObject *metaObject, const QString &property,
                               const QString &word, QString *text)
{
    const int index = metaObject->indexOfClassInfo((property + word).toUtf8().constData());
    if (index < 0)
        return false;
    if (text)
        *text = QString::fromUtf8(metaObject->classInfo(index).value());
    return true;
}

bool MetaDescription::declared(const QString &word, QString *text) const
{
    return declared(m_object->metaObject(), m_name, word, text);
}

void MetaDescription::set(int propertyIndex, QObject *object)
{
    m_object = object;
    m_propertyIndex = propertyIndex;
    const QMetaProperty meta = property();
    m_name = QString::fromLatin1(meta.name());
    m_type = QString::fromLatin1(meta.typeName());
    m_typeId = meta.type();

    QString text;
    m_editable = declared(QStringLiteral("Editable"), &text) && text == QLatin1String("true");
    // Only the presence counts: "NotVisible=false" hides as well.
    m_visible = !declared(QStringLiteral("NotVisible"));
    m_displayName = declared(QStringLiteral("DisplayName"), &text) ? text : m_name;
    if (declared(QStringLiteral("Default"), &text))
        parseDefault(text, meta.isEnumType());
    if (declared(QStringLiteral("VisibleBound"), &text)
        || declared(QStringLiteral("VisibleBinded"), &text))
        parseVisibility(text);

    if (declared(QStringLiteral("Minimum"), &text))
        m_hasMinimum = assignDouble(m_minimum, text);
    if (declared(QStringLiteral("Prefix"), &text))
        m_prefix = text;
    if (declared(QStringLiteral("Suffix"), &text))
        m_suffix = text;
    if (declared(QStringLiteral("Maximum"), &text))
        m_hasMaximum = assignDouble(m_maximum, text);
    if (declared(QStringLiteral("Step"), &text))
        m_hasStep = assignDouble(m_step, text);

    static const QStringList extraWords = {
        QStringLiteral("Description"), QStringLiteral("Placeholder"), QStringLiteral("Precision"),
        QStringLiteral("Suggestions")};
    for (const QString &word : extraWords) {
        if (declared(word, &text) && !text.isEmpty())
            m_extras.insert(word, text);
    }

    if (declared(QStringLiteral("SpecialType"), &text))
        parseSpecialType(text);
    if (declared(QStringLiteral("Category"), &text))
        m_category = text;
    if (declared(QStringLiteral("Priority"), &text)) {
        bool ok = false;
        const int priority = text.toInt(&ok);
        if (ok)
            m_priority = priority;
    }
    m_showDefault = !declared(QStringLiteral("NoDefault"));
    m_readOnly = declared(QStringLiteral("ReadOnly"));
    if (declared(QStringLiteral("Icon"), &text))
        m_icon = text;

    if (meta.hasNotifySignal()) {
        static const QMetaMethod slot = AbstractMetaDescription::staticMetaObject.method(
            AbstractMetaDescription::staticMetaObject.indexOfSlot("valueChangedSlot()"));
        connect(object, meta.notifySignal(), this, slot);
    }
}

void MetaDescription::parseDefault(const QString &raw, bool enumeration)
{
    QString value = raw;
    if (enumeration) {
        // The key is what follows the last "::". Without "::" the first character goes as well
        // (index -1 plus 2); declarations have always been written with the scope, so it stays.
        value = raw.mid(raw.lastIndexOf(QLatin1String("::")) + 2);
        m_type = enumTypeName;
        m_typeId = enumTypeId;
    } else if (isNumberType(m_type)) {
        // "2.5f" and the like: a written suffix is no part of the number.
        static const QRegularExpression letters(QStringLiteral("[a-zA-Z]"));
        value.remove(letters);
    } else if (m_type == QLatin1String("QString")) {
        value = TextHelper::trim(raw, QLatin1Char('"'));
    } else if (m_type == QLatin1String("QColor")) {
        value = colourDefault(raw);
    }
    if (raw.endsWith(QLatin1String("()"))) {
        QString called;
        if (callDefault(raw.chopped(2), &called))
            value = called;
    }
    m_defaultValue = value;
    m_hasDefault = true;
}

bool MetaDescription::callDefault(const QString &call, QString *result) const
{
    if (call == QLatin1String("QDateTime::currentDateTime")) {
        *result = QDateTime::currentDateTime().toString(Qt::ISODate);
        return true;
    }
    if (call == QLatin1String("QDateTime")) {
        *result = QDateTime().toString(Qt::ISODate);
        return true;
    }
    if (call == QLatin1String("QDate")) {
        *result = QDate().toString(Qt::ISODate);
        return true;
    }
    QString value;
    if (!QMetaObject::invokeMethod(m_object, call.toUtf8().constData(), Qt::DirectConnection,
                                   Q_RETURN_ARG(QString, value)))
        return false;
    *result = value;
    return true;
}

void MetaDescription::parseVisibility(const QString &rule)
{
    const QStringList entries = rule.split(QLatin1Char(';'), TextHelper::SkipEmptyParts());
    for (const QString &entry : entries) {
        const QStringList parts = entry.split(QLatin1Char(':'));
        if (parts.size() >= 2)
            m_visibleBound.insert(parts.constFirst(), parts.mid(1).join(QLatin1Char(':')));
        else if (entry.startsWith(QLatin1Char('!')))
            m_visibleBound.insert(entry.mid(1), QStringLiteral("false"));
        else
            m_visibleBound.insert(entry, QStringLiteral("true"));
    }
}

void MetaDescription::parseSpecialType(const QString &text)
{
    m_specialType = text;
    m_hasSpecialType = true;
    const int colon = text.indexOf(QLatin1Char(':'));
    m_pickOption = colon < 0 ? text : text.left(colon);
    m_pickExtensions = colon < 0 ? QString() : text.mid(colon + 1);
}

QMetaEnum MetaDescription::enumerator() const
{
    return property().enumerator();
}

bool MetaDescription::isEnumType() const
{
    return property().isEnumType();
}

bool MetaDescription::setValue(const QVariant &value)
{
    const QMetaProperty meta = property();
    if (!meta.isWritable())
        return false;
    return meta.write(m_object, value);
}

QVariant MetaDescription::getValue() const
{
    if (!m_object)
        return QVariant();
    try {
        return property().read(m_object);
    } catch (...) {
        qDebug() << "ERROR getValue of" << m_name;
        return QVariant();
    }
}

void MetaDescription::setDefault()
{
    if (!m_hasDefault)
        return;
    // A class that resets the property itself knows its default better than the declaration.
    if (property().reset(m_object)) {
        const QString own = valueText(getValue());
        if (own != m_defaultValue)
            m_defaultValue = own;
    }
    setTextValue(m_defaultValue);
    emit valueChanged(getValue());
}

bool MetaDescription::setTextValue(const QString &text)
{
    const int type = property().userType();
    if (type != QMetaType::QPoint && type != QMetaType::QPointF && type != QMetaType::QSize)
        return setValue(QVariant(text));
    double a = 0;
    double b = 0;
    if (!parsePointOrSize(text, a, b))
        return false;
    if (type == QMetaType::QPoint)
        return setValue(QPoint(saturatedInt(a), saturatedInt(b)));
    if (type == QMetaType::QSize)
        return setValue(QSize(saturatedInt(a), saturatedInt(b)));
    return setValue(QPointF(a, b));
}

bool MetaDescription::parsePointOrSize(const QString &text, double &a, double &b)
{
    QString bare = text;
    for (const char *noise : {"QPointF", "QPoint", "QSize", "(", ")", "f"})
        bare.remove(QLatin1String(noise));
    const QStringList pieces = bare.split(QLatin1Char(','), TextHelper::SkipEmptyParts());
    if (pieces.size() < 2)
        return false;
    bool okA = false;
    bool okB = false;
    const double first = pieces[0].toDouble(&okA);
    const double second = pieces[1].toDouble(&okB);
    if (!okA || !okB)
        return false;
    a = first;
    b = second;
    return true;
}

QString MetaDescription::valueText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QPoint:
        return QStringLiteral("%1,%2").arg(value.toPoint().x()).arg(value.toPoint().y());
    case QMetaType::QPointF:
        return QStringLiteral("%1,%2").arg(value.toPointF().x()).arg(value.toPointF().y());
    case QMetaType::QSize:
        return QStringLiteral("%1,%2").arg(value.toSize().width()).arg(value.toSize().height());
    default:
        return value.toString();
    }
}
