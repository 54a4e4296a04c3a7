#include "TarveloModel.h"

#include "data/TarveloScript.h"
#include "data/TarveloSettings.h"
#include "foundation/FileUtilities.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {
TarveloModel *s_instance = nullptr;
}

TarveloModel::TarveloModel(QObject *parent)
    : QObject(parent)
{
    m_rootFolder = FileUtilities::FolderSlash(
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QStringLiteral("/Mirenthalic/Tarvelo/"));
    FileUtilities::createIfNotExists(m_rootFolder);
    m_recordsFolder = m_rootFolder + QStringLiteral("Records/");
    m_scriptsFolder = m_rootFolder + QStringLiteral("Scripts/");
    FileUtilities::createIfNotExists(m_recordsFolder);
    FileUtilities::createIfNotExists(m_scriptsFolder);
    // Settings.xml is named relative to the working folder, which is the data folder from now on.
    QDir::setCurrent(m_rootFolder);
    m_settings = new TarveloSettings(this);
    m_settings->reload();

    reloadScripts();
    s_instance = this;
}

TarveloModel::~TarveloModel()
{
    if (s_instance == this)
        s_instance = nullptr;
}

TarveloModel *TarveloModel::instance()
{
    return s_instance;
}

QString TarveloModel::scriptPath(const QString &title) const
{
    return m_scriptsFolder + title + QStringLiteral(".script");
}

void TarveloModel::reloadScripts()
{
    const QStringList files =
        FileUtilities::getFilesOfType(m_scriptsFolder, QStringLiteral("script"), true, true);
    m_scriptTitles.clear();
    for (const QString &file : files) {
        const QString title = FileUtilities::filename(file, false).trimmed();
        if (!title.isEmpty() && !m_scriptTitles.contains(title, Qt::CaseInsensitive))
            m_scriptTitles << title;
    }
    emit scriptsUpdated();

    if (m_scriptTitles.isEmpty()) {
        selectScript(QString());
        return;
    }
    if (!m_currentScriptTitle.isEmpty()
        && m_scriptTitles.contains(m_currentScriptTitle, Qt::CaseInsensitive)) {
        selectScript(m_currentScriptTitle);
        return;
    }
    const QString remembered = rememberedScriptTitle();
    if (m_scriptTitles.contains(remembered, Qt::CaseSensitive))
        selectScript(remembered);
    if (m_currentScriptTitle.isEmpty())
        selectScript(m_scriptTitles.constFirst());
}

void TarveloModel::selectScript(const QString &titleArg)
{
    const QString title = titleArg; // may refer to m_currentScriptTitle, cleared below
    // The old script is left alive on purpose: views may still hold it.
    m_currentScript = nullptr;
    m_currentScriptTitle.clear();
    const QString path = scriptPath(title);
    if (QFile::exists(path)) {
        auto *script = new TarveloScript;
        if (script->load(path)) {
            m_currentScript = script;
            m_currentScriptTitle = title;
        } else {
            delete script;
        }
    }
    rememberScriptTitle();
    emit scriptChanged();
}

void TarveloModel::commitScript(bool save)
{
    if (!m_currentScript)
        return;
    if (save) {
        const QString title = m_currentScript->title();
        // A rename is a delete and a write; a failed delete leaves the old file beside the new.
        if (title != m_currentScriptTitle && QFile::remove(scriptPath(m_currentScriptTitle)))
            m_currentScriptTitle.clear();
        m_currentScript->save(scriptPath(title));
        m_currentScriptTitle = title;
    }
    reloadScripts();
}

void TarveloModel::removeCurrentScript(bool refresh)
{
    if (QFile::remove(scriptPath(m_currentScriptTitle)))
        m_currentScriptTitle.clear();
    if (refresh)
        reloadScripts();
}

bool TarveloModel::isTitleFree(const QString &title, const QString &own) const
{
    const QString wanted = title.trimmed();
    if (wanted.isEmpty())
        return false;
    for (const QString &existing : m_scriptTitles) {
        if (!own.isEmpty() && existing.compare(own, Qt::CaseInsensitive) == 0)
            continue;
        if (existing.compare(wanted, Qt::CaseInsensitive) == 0)
            return false;
    }
    return true;
}

// The last selected title survives restarts through the application settings.
QString TarveloModel::rememberedScriptTitle() const
{
    return m_settings->getLastScriptTitle();
}

// The setter stores and announces only a title that differs, and the settings write themselves
// at once, so the choice outlives a crash.
void TarveloModel::rememberScriptTitle()
{
    m_settings->setLastScriptTitle(m_currentScriptTitle);
}
