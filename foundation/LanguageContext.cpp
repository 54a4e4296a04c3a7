#include "LanguageContext.h"

#include "FileUtilities.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

LanguageContext *LanguageContext::Instance()
{
    static LanguageContext *instance = new LanguageContext;
    return instance;
}

LanguageContext::LanguageContext()
{
    addFilesFrom(QStringLiteral(":"));
    addFilesFrom(QCoreApplication::applicationDirPath());
}

void LanguageContext::addFilesFrom(const QString &folder)
{
    const QStringList files =
        FileUtilities::getFilesOfType(folder, QStringLiteral("qm"), true, true);
    for (const QString &file : files)
        m_languageFiles[file.right(8).left(5)] << file; // "Tarvelo_ru_RU.qm" gives "ru_RU"
}

bool LanguageContext::hasLanguage(const QString &key)
{
    return Instance()->m_languageFiles.contains(key);
}

QStringList LanguageContext::availableLanguages()
{
    return Instance()->m_languageFiles.keys(); // a QMap's keys are sorted
}

QString LanguageContext::currentLanguage()
{
    return Instance()->m_language;
}

QString LanguageContext::systemLanguage()
{
    return QLocale::system().name();
}

QString LanguageContext::setLanguage(const QString &lang)
{
    QString chosen = lang;
    if (!hasLanguage(chosen)) {
        if (hasLanguage(systemLanguage()))
            chosen = systemLanguage();
        else if (hasLanguage(QStringLiteral("en-EN")))
            chosen = QStringLiteral("en-EN");
        else if (availableLanguages().isEmpty())
            chosen.clear();
        else
            chosen = availableLanguages().constFirst();
    }
    if (hasLanguage(chosen))
        Instance()->loadExistingLanguage(chosen);
    return currentLanguage();
}

bool LanguageContext::loadExistingLanguage(const QString &key)
{
    if (!m_languageFiles.contains(key))
        return false;
    for (const QString &file : qAsConst(m_languageFiles[key])) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(file))
            QCoreApplication::installTranslator(translator);
        else
            delete translator;
    }
    m_language = key;
    return true;
}
