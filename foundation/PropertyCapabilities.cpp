#include "PropertyCapabilities.h"

#include "AbstractMetaDescription.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QStringList>

namespace PropertyCapabilities {

namespace {

const char *const genericContext = "Generic";
const QLatin1String untranslatedMark("!-");

QString translated(const char *context, const QString &text)
{
    return QCoreApplication::translate(context, text.toUtf8().constData());
}

// Adds key and, under key + "Translated", its translation where that differs.
void addWithTranslation(QJsonObject &facts, const QString &key, const QString &text)
{
    facts.insert(key, text);
    const QString other = translated(genericContext, text);
    if (other != text)
        facts.insert(key + QStringLiteral("Translated"), other);
}

// A suffix or prefix marked "!-" is shown as it stands, without translation.
void addAffix(QJsonObject &facts, const QString &key, const QString &affix)
{
    if (affix.isEmpty())
        return;
    if (affix.startsWith(untranslatedMark))
        facts.insert(key, affix.mid(untranslatedMark.size()));
    else
        addWithTranslation(facts, key, affix);
}

void addEnumeration(QJsonObject &facts, const AbstractMetaDescription *description)
{
    const QMetaEnum meta = description->enumerator();
    QJsonArray keys;
    QJsonArray translations;
    for (int i = 0; i < meta.keyCount(); ++i) {
        keys << QString::fromLatin1(meta.key(i));
        translations << QCoreApplication::translate(meta.name(), meta.key(i));
    }
    facts.insert(QStringLiteral("enum"), keys);
    facts.insert(QStringLiteral("enumTranslations"), translations);
}

QString pair(const QString &key, const QString &value)
{
    return QLatin1Char('"') + key + QStringLiteral("\"=\"") + value + QLatin1Char('"');
}

} // namespace

QJsonObject of(const AbstractMetaDescription *description)
{
    QJsonObject facts;
    const QString name = description->name();
    facts.insert(QStringLiteral("name"), name);
    facts.insert(QStringLiteral("type"), description->type());
    const QString translatedName = translated(genericContext, name);
    if (translatedName != name)
        facts.insert(QStringLiteral("nameTranslated"), translatedName);
    facts.insert(QStringLiteral("value"), QJsonValue::fromVariant(description->getValue()));
    if (description->hasDefault())
        facts.insert(QStringLiteral("default"), description->defaultValue());
    if (description->hasMinimum())
        facts.insert(QStringLiteral("min"), description->minimum());
    if (description->hasMaximum())
        facts.insert(QStringLiteral("max"), description->maximum());
    if (description->hasStep())
        facts.insert(QStringLiteral("step"), description->step());
    if (description->hasSpecialType())
        facts.insert(QStringLiteral("specialType"), description->specialType());
    if (!description->category().isEmpty())
        addWithTranslation(facts, QStringLiteral("category"), description->category());

    const QMap<QString, QString> extras = description->extras();
    for (auto it = extras.cbegin(); it != extras.cend(); ++it)
        facts.insert(it.key(), it.value());
    const auto explanation = extras.constFind(QStringLiteral("Description"));
    if (explanation != extras.cend())
        facts.insert(QStringLiteral("description"),
                     translated(genericContext, explanation.value()));

    if (!description->pickOption().isEmpty())
        facts.insert(QStringLiteral("pickOption"), description->pickOption());
    if (!description->pickExtensions().isEmpty())
        facts.insert(QStringLiteral("pickExtensions"), description->pickExtensions());
    addAffix(facts, QStringLiteral("suffix"), description->suffix());
    addAffix(facts, QStringLiteral("prefix"), description->prefix());

    const QStringList options = description->enums();
    if (!options.isEmpty()) {
        QJsonArray translations;
        for (const QString &option : options)
            translations << translated(genericContext, option);
        facts.insert(QStringLiteral("enums"), QJsonArray::fromStringList(options));
        facts.insert(QStringLiteral("enumsTranslations"), translations);
    }
    if (description->isEnumType())
        addEnumeration(facts, description);

    if (!description->showDefault())
        facts.insert(QStringLiteral("hideDefault"), true);
    if (description->readOnly())
        facts.insert(QStringLiteral("readOnly"), true);
    if (!description->visible())
        facts.insert(QStringLiteral("hidden"), true);
    const QMap<QString, QString> bound = description->visibleBound();
    if (!bound.isEmpty()) {
        QStringList entries;
        for (auto it = bound.cbegin(); it != bound.cend(); ++it)
            entries << it.key() + QLatin1Char(':') + it.value();
        facts.insert(QStringLiteral("visibleBound"), entries.join(QLatin1Char(';')));
    }
    return facts;
}

QString text(const AbstractMetaDescription *description)
{
    QStringList pairs {pair(QStringLiteral("name"), description->name()),
                       pair(QStringLiteral("type"), description->type()),
                       pair(QStringLiteral("default"), description->defaultValue()),
                       pair(QStringLiteral("value"), description->getValue().toString())};
    static const QStringList numberTypes = {QStringLiteral("int"), QStringLiteral("float"),
                                            QStringLiteral("double")};
    if (numberTypes.contains(description->type())) {
        pairs << pair(QStringLiteral("minimum"), QString::number(description->minimum()))
              << pair(QStringLiteral("maximum"), QString::number(description->maximum()))
              << pair(QStringLiteral("step"), QString::number(description->step()));
    }
    return QLatin1Char('[') + pairs.join(QStringLiteral(", ")) + QLatin1Char(']');
}

} // namespace PropertyCapabilities
