#include "NTIntLimits.h"

#include "AbstractMetaDescription.h"
#include "MetaDescription.h"

namespace {

void readNumber(const QMetaObject &metaObject, const QString &property, const QString &word,
                int &target)
{
    QString text;
    if (!MetaDescription::declared(&metaObject, property, word, &text))
        return;
    double number = 0;
    if (AbstractMetaDescription::assignDouble(number, text))
        target = int(number);
}

} // namespace

int NTIntLimits::bounded(int value) const
{
    return qBound(minimum, value, maximum);
}

NTIntLimits NTIntLimits::declared(const QMetaObject &metaObject, const char *property)
{
    NTIntLimits limits;
    const QString name = QString::fromLatin1(property);
    readNumber(metaObject, name, QStringLiteral("Default"), limits.defaultValue);
    readNumber(metaObject, name, QStringLiteral("Minimum"), limits.minimum);
    readNumber(metaObject, name, QStringLiteral("Maximum"), limits.maximum);
    readNumber(metaObject, name, QStringLiteral("Step"), limits.step);
    return limits;
}
