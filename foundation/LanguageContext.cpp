#include "LanguageContext.h"

#include "FileUtilities.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {
// A file that doesn't load is skipped.
void installIfLoaded(QTranslator *translator, bool loaded)
{
    if (loaded)
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}
} // namespace

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
    // Qt's own dialogs speak the program's language, where Qt has a file for it.
    auto *qt = new QTranslator(QCoreApplication::instance());
    installIfLoaded(qt,
                    qt->load(QLocale(key), QStringLiteral("qtbase"), QStringLiteral("_"),
                             QLibraryInfo::location(QLibraryInfo::TranslationsPath)));
    // Installed last, so that the program's own texts win over Qt's.
    for (const QString &file : qAsConst(m_languageFiles[key])) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        installIfLoaded(translator, translator->load(file));
    }
    m_language = key;
    return true;
}

QString LanguageContext::AutoDetectLanguage(const QString &settingsPath)
{
    QString language = systemLanguage().startsWith(QLatin1String("ru")) ? QStringLiteral("ru_RU")
                                                                        : QStringLiteral("en_US");
    QFile file(settingsPath);
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray text = file.readAll();
        if (text.contains("<Language>en_US</Language>"))
            language = QStringLiteral("en_US");
        else if (text.contains("<Language>ru_RU</Language>"))
            language = QStringLiteral("ru_RU");
    }
    return language;
}

void LanguageContext::loadAllTranslators()
{
    for (auto it = m_languageFiles.cbegin(); it != m_languageFiles.cend(); ++it) {
        for (const QString &file : it.value()) {
            auto *translator = new QTranslator(this);
            if (translator->load(file))
                m_translators[it.key()] << translator;
            else
                delete translator;
        }
    }
}

QString LanguageContext::translate(const QString &context, const QString &text, const QString &lang)
{
    const QString key = QString(lang).replace(QLatin1Char('-'), QLatin1Char('_'));
    LanguageContext *self = Instance();
    if (self->m_translators.isEmpty())
        self->loadAllTranslators();
    if (!self->m_translators.contains(key)) {
        qDebug() << "lang not found" << lang;
        return text;
    }
    // UTF-8, as the translation files hold their sources: Russian texts are sources too.
    const QByteArray contextBytes = context.toUtf8();
    const QByteArray textBytes = text.toUtf8();
    for (const QTranslator *translator : qAsConst(self->m_translators[key])) {
        const QString found =
            translator->translate(contextBytes.constData(), textBytes.constData());
        if (!found.isEmpty())
            return found;
    }
    qDebug() << "No translation found for" << context << text << lang;
    return text;
}

QMap<QString, QString> LanguageContext::multilingualTranslate(const QString &context,
                                                              const QString &text)
{
    LanguageContext *self = Instance();
    if (self->m_translators.isEmpty())
        self->loadAllTranslators();
    QMap<QString, QString> result;
    for (const QString &key : self->m_translators.keys())
        result.insert(key, translate(context, text, key));
    return result;
}
