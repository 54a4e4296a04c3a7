#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

class QTranslator;

// Knows the translation files compiled in (and beside the executable) and installs those of
// one language, together with Qt's own texts in that language. Keys are five characters taken
// from the file name, such as "ru_RU".
class LanguageContext : public QObject
{
    Q_OBJECT
public:
    static LanguageContext *Instance();

    static bool hasLanguage(const QString &key);
    static QStringList availableLanguages();
    static QString currentLanguage();
    static QString systemLanguage();
    // An unknown lang falls through to the system's language, then to the first available.
    static QString setLanguage(const QString &lang);
    // The language a settings file asks for, found by a plain text search so that it is known
    // before any settings object exists; without one, Russian on a Russian system, else English.
    static QString AutoDetectLanguage(const QString &settingsPath);
    // text in another language than the installed one; lang may be written "ru-RU".
    static QString translate(const QString &context, const QString &text, const QString &lang);
    static QMap<QString, QString> multilingualTranslate(const QString &context,
                                                        const QString &text);

private:
    LanguageContext();
    void addFilesFrom(const QString &folder);
    bool loadExistingLanguage(const QString &key);
    void loadAllTranslators();

    QMap<QString, QStringList> m_languageFiles;
    QString m_language;
    // Not installed: they serve translate() alone.
    QMap<QString, QList<QTranslator *>> m_translators;
};
