#include "SettingsWithLanguage.h"

#include "AppDialogs.h"
#include "foundation/AbstractMetaDescription.h"
#include "foundation/LanguageContext.h"

SettingsWithLanguage::SettingsWithLanguage(const QString &filePath, bool autoSave,
                                           const QStringList &languages, QObject *parent,
                                           NTSettingsFormat format)
    : NTSettings(filePath, autoSave, parent, format)
    , m_languages(languages)
{
    applyDeclaredDefaults();
    // Only the first reading decides: the helper goes, and the connection with it.
    auto *firstReading = new QObject(this);
    connect(this, &NTSettings::reloaded, firstReading, [this, firstReading] {
        delete firstReading;
        adoptLanguages();
    });
}

void SettingsWithLanguage::adoptLanguages()
{
    AbstractMetaDescription *description = getPropertyByName(QStringLiteral("Language"));
    description->setEnums(m_languages);
    const QString system = LanguageContext::systemLanguage();
    description->setDefaultValue(m_languages.contains(system) ? system
                                     : m_languages.isEmpty()  ? QString()
                                                              : m_languages.constFirst());
    if (getLanguage().isEmpty())
        setLanguage(description->defaultValue());
    LanguageContext::setLanguage(getLanguage());
    connect(this, &SettingsWithLanguage::changedLanguage, this,
            &SettingsWithLanguage::onLanguageChanged);
}

void SettingsWithLanguage::onLanguageChanged(const QString &value)
{
    if (!LanguageContext::hasLanguage(value))
        return;
    LanguageContext::setLanguage(value);
    AppHelper::warningMessage(tr("Language will be changed on program restart"), QString(),
                              QMessageBox::Warning);
}
