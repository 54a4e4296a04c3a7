#include "KeyValueText.h"

#include <QStringList>

QMap<QString, QString> parseKeyValues(const QString &text, const QString &itemSeparator,
                                      const QString &pairSeparator)
{
    QMap<QString, QString> result;
    const QStringList items = text.trimmed().split(itemSeparator, Qt::SkipEmptyParts);
    for (const QString &item : items) {
        const QStringList parts = item.split(pairSeparator, Qt::SkipEmptyParts);
        if (parts.size() == 2)
            result.insert(parts.at(0), parts.at(1).trimmed());
    }
    return result;
}

QString validThreshold(const QString &text)
{
    static const QStringList valid = [] {
        QStringList list;
        for (int i = 0; i <= 10; ++i)
            list << QString::number(i);
        return list;
    }();
    const QString trimmed = text.trimmed();
    return valid.contains(trimmed) ? trimmed : QString();
}
