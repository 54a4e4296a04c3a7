#pragma once

#include <QChar>
#include <QDateTime>
#include <QString>
#include <QStringList>

// Small text helpers shared by the file code and the generated forms.
namespace TextHelper {

// "yyyy.MM.dd-hh.mm.ss" (with ".zzz" when asked); an invalid time means now.
QString DateTimeFileString(const QDateTime &time, bool withMilliseconds);

Qt::SplitBehaviorFlags SkipEmptyParts();

// Drops part from both ends, one character per round, as long as the text starts (then ends)
// with it.
QString trim(const QString &text, const QString &part);
QString trim(const QString &text, QChar part);

// Splits at each separator in turn; later separators also split what earlier ones left.
QStringList multisplit(const QString &text, const QStringList &separators,
                       Qt::SplitBehavior behavior);
QStringList multisplit(const QStringList &pieces, const QStringList &separators,
                       Qt::SplitBehavior behavior);

} // namespace TextHelper
