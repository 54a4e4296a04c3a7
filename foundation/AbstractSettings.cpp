#include "AbstractSettings.h"

AbstractSettings::AbstractSettings(QObject *parent)
    : QObject(parent)
{
}

QVariant AbstractSettings::getValue(const QString &) const
{
    return QVariant();
}
