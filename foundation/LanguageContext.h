#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

// Knows the translation files compiled in (and beside the executable) and installs those of
// one language. Keys are five characters taken from the file name, such as "ru_RU".
class LanguageContext : public QObject
{
    Q_OBJECT
public:
    static LanguageContext *Instance();

    static bool hasLanguage(const QString &key);
    static QStringList availableLanguages();
    static QString currentLanguage();
    static QString systemLanguage();
    static QString setLanguage(const QString &lang);

private:
    LanguageContext();
    void addFilesFrom(const QString &folder);
    bool loadExistingLanguage(const QString &key);

    QMap<QString, QStringList> m_languageFiles;
    QString m_language;
};
