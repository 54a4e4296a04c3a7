#include "AbstractMetaDescription.h"

#include "TextHelper.h"

AbstractMetaDescription::AbstractMetaDescription(QObject *parent)
    : QObject(parent)
{
}

bool AbstractMetaDescription::hasType(const char *typeName) const
{
    return m_type.compare(QLatin1String(typeName), Qt::CaseInsensitive) == 0;
}

bool AbstractMetaDescription::isByteNumber() const
{
    return hasType("uchar") || hasType("char");
}

bool AbstractMetaDescription::displaysBefore(const AbstractMetaDescription *a,
                                             const AbstractMetaDescription *b)
{
    if (a->m_priority != b->m_priority)
        return a->m_priority < b->m_priority;
    return a->m_displayName < b->m_displayName;
}

bool AbstractMetaDescription::assignDouble(double &target, const QString &text)
{
    QString bare = text;
    for (const char *noise : {"f", "QPointF", "QSize", "QPoint", "(", ")"})
        bare.remove(QLatin1String(noise));
    const QStringList pieces = bare.trimmed().split(QLatin1Char(','), TextHelper::SkipEmptyParts());
    if (pieces.isEmpty())
        return false;
    bool ok = false;
    const double value = pieces.constFirst().toDouble(&ok);
    if (ok)
        target = value;
    return ok;
}

void AbstractMetaDescription::valueChangedSlot()
{
    emit valueChanged(getValue());
}

bool AbstractMetaDescription::setTextValue(const QString &text)
{
    return setValue(QVariant(text));
}
