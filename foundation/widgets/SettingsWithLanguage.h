#pragma once

#include "foundation/NTSettings.h"

#include <QStringList>

// Settings with the interface language among them. The first time the file is read, the
// language's choices become the languages given, an empty value takes the system's language
// (or the first given), and that language is loaded; a later change is loaded too, and the
// operator is told that it takes effect on the next start.
class SettingsWithLanguage : public NTSettings
{
    Q_OBJECT
    Q_PROPERTY(QString Language READ getLanguage WRITE setLanguage RESET resetLanguage NOTIFY
                   changedLanguage)
    Q_CLASSINFO("LanguageSpecialType", "StringList")
    Q_CLASSINFO("LanguageEditable", "true")
    Q_CLASSINFO("LanguageDefault", "\"\"")

public:
    SettingsWithLanguage(const QString &filePath, bool autoSave, const QStringList &languages,
                         QObject *parent = nullptr, NTSettingsFormat format = XML);

signals:
    void changedLanguage(const QString &value);

private:
    void adoptLanguages();
    void onLanguageChanged(const QString &value);

    QStringList m_languages;

    NT_SETTING(QString, Language)
};
