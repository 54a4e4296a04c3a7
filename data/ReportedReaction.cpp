#include "ReportedReaction.h"

#include "KeyValueText.h"

#include <utility>

namespace {
const QString ItemSeparator = QStringLiteral(";");
const QString PairSeparator = QStringLiteral("=");

// The keys in the order the box writes them.
const std::pair<const QString &, int ReportedReaction::*> Fields[] = {
    {ReportedReaction::KeyReaction, &ReportedReaction::reaction},
    {ReportedReaction::KeyButton, &ReportedReaction::button},
    {ReportedReaction::KeyRequired, &ReportedReaction::required},
    {ReportedReaction::KeyStimulus, &ReportedReaction::stimulus},
    {ReportedReaction::KeyAllowed, &ReportedReaction::allowed},
    {ReportedReaction::KeyDelay, &ReportedReaction::delay},
};
} // namespace

QString ReportedReaction::toText() const
{
    QStringList items;
    for (const auto &field : Fields)
        items << field.first + PairSeparator + QString::number(this->*field.second);
    return items.join(ItemSeparator);
}

ReportedReaction ReportedReaction::fromText(const QString &text)
{
    const QMap<QString, QString> pairs = parseKeyValues(text, ItemSeparator, PairSeparator);
    ReportedReaction reaction;
    for (const auto &field : Fields) {
        const auto it = pairs.constFind(field.first);
        if (it != pairs.cend())
            reaction.*field.second = it->toInt();
    }
    return reaction;
}
