#include "TextHelper.h"

namespace TextHelper {

QString DateTimeFileString(const QDateTime &time, bool withMilliseconds)
{
    const QDateTime when = time.isValid() ? time : QDateTime::currentDateTime();
    return when.toString(withMilliseconds ? QStringLiteral("yyyy.MM.dd-hh.mm.ss.zzz")
                                          : QStringLiteral("yyyy.MM.dd-hh.mm.ss"));
}

Qt::SplitBehaviorFlags SkipEmptyParts()
{
    return Qt::SkipEmptyParts;
}

QString trim(const QString &text, const QString &part)
{
    QString result = text;
    while (!part.isEmpty() && result.startsWith(part))
        result.remove(0, 1);
    while (!part.isEmpty() && result.endsWith(part))
        result.chop(1);
    return result;
}

QString trim(const QString &text, QChar part)
{
    return trim(text, QString(part));
}

QStringList multisplit(const QString &text, const QStringList &separators,
                       Qt::SplitBehavior behavior)
{
    return multisplit(QStringList {text}, separators, behavior);
}

QStringList multisplit(const QStringList &pieces, const QStringList &separators,
                       Qt::SplitBehavior behavior)
{
    QStringList result = pieces;
    for (const QString &separator : separators) {
        QStringList next;
        for (const QString &piece : qAsConst(result))
            next << piece.split(separator, behavior, Qt::CaseSensitive);
        result = next;
    }
    return result;
}

} // namespace TextHelper
