#pragma once

#include <QMap>
#include <QString>

// The one parser of the program's key=value texts, in script files and in reaction reports.
// Only a piece that splits into exactly two non-empty parts makes an entry; values are trimmed,
// keys are taken as they stand, and a later duplicate wins.
QMap<QString, QString> parseKeyValues(const QString &text, const QString &itemSeparator,
                                      const QString &pairSeparator);

// The text itself if it is one of "0" to "10" once trimmed, otherwise the empty string.
QString validThreshold(const QString &text);
