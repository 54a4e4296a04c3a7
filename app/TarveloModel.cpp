#include "TarveloModel.h"

#include "data/TarveloScript.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "foundation/FileUtilities.h"
#include "session/SessionRecorder.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

namespace {
TarveloModel *s_instance = nullptr;

// Names the GUIDs given to subjects whose file holds none, so that a folder always gets the
// same one.
const QUuid SubjectGuidNamespace(QStringLiteral("{6d1f3c52-8b0e-4a57-9f2d-71c4e0a9b3f8}"));
} // namespace

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
    m_dataFolderProblem = FileUtilities::writableFolderProblem(m_rootFolder);
    QDir::setCurrent(m_rootFolder);
    m_settings = new TarveloSettings(this);
    // Named in full: with a data folder that can't be entered, a bare name would put the file
    // into whatever folder the program was started from.
    m_settings->setFilepath(m_rootFolder + TarveloSettings::fileName());
    m_settings->reload();

    m_device = new TarveloDevice(m_settings->getAutoSearch() ? -1 : m_settings->getComPort(), this);
    connect(m_settings, &TarveloSettings::changedAutoSearch, this,
            &TarveloModel::followPortSetting);
    connect(m_settings, &TarveloSettings::changedComPort, this, &TarveloModel::followPortSetting);
    connect(m_settings, &TarveloSettings::changedDeviceSearchTimeout, this,
            &TarveloModel::followSearchInterval);
    followSearchInterval();

    m_recorder = new SessionRecorder(
        [this](const TarveloUser *subject) {
            return subject ? userFolder(subject) : m_recordsFolder;
        },
        this);
    connect(m_recorder, &SessionRecorder::sessionUpdated, this, &TarveloModel::sessionUpdated);
    connect(m_recorder, &SessionRecorder::sessionStarted, this, &TarveloModel::sessionStarted);
    connect(m_recorder, &SessionRecorder::sessionFinished, this, &TarveloModel::sessionFinished);
    m_connections << connect(m_device, &TarveloDevice::onMessage, this,
                             &TarveloModel::handleDeviceMessage);

    reloadUsers();
    selectUser(m_settings->getLastUserGuid());
    reloadScripts();
    s_instance = this;
}

void TarveloModel::followPortSetting()
{
    m_device->setComPort(m_settings->getAutoSearch() ? -1 : m_settings->getComPort());
}

// Kept to the declared limits: a hand-edited 0 would make the search timer spin without pause,
// and a huge value would overflow the timer's milliseconds.
void TarveloModel::followSearchInterval()
{
    m_device->setSearchInterval(
        m_settings->getDeviceSearchTimeoutLimits().bounded(m_settings->getDeviceSearchTimeout()));
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

bool TarveloModel::commitScript(bool save)
{
    if (!m_currentScript)
        return false;
    if (save) {
        const QString title = m_currentScript->title().trimmed();
        if (!titleProblem(title, m_currentScriptTitle).isEmpty())
            return false;
        m_currentScript->setTitle(title);
        // A rename writes the new file first and only then removes the old one, so a failed
        // write loses nothing. On a file system that ignores case, a rename in case only
        // names the same file twice, which must not be removed.
        const QString oldPath = scriptPath(m_currentScriptTitle);
        const QString newPath = scriptPath(title);
        if (!m_currentScript->save(newPath))
            return false;
        if (QFileInfo(oldPath) != QFileInfo(newPath))
            QFile::remove(oldPath);
        m_currentScriptTitle = title;
    }
    reloadScripts();
    return true;
}

bool TarveloModel::addScript(const TarveloScript &script)
{
    const QString title = script.title().trimmed();
    if (!titleProblem(title, QString()).isEmpty() || !script.save(scriptPath(title)))
        return false;
    m_currentScriptTitle = title;
    reloadScripts();
    return true;
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

QString TarveloModel::titleProblem(const QString &title, const QString &own) const
{
    const QString wanted = title.trimmed();
    if (wanted.isEmpty())
        return emptyTitleText();
    const QString problem = FileUtilities::fileNameProblem(wanted);
    if (!problem.isEmpty())
        return problem;
    return isTitleFree(wanted, own) ? QString() : usedTitleText();
}

QString TarveloModel::emptyTitleText()
{
    return tr("Имя сценария не может быть пустым");
}

QString TarveloModel::usedTitleText()
{
    return tr("Такое имя сценария уже используется");
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

void TarveloModel::reloadUsers()
{
    // The old subjects live on: a view or the current selection may still point at them.
    m_users.clear();
    const QStringList folders = FileUtilities::GetSubfolders(m_recordsFolder, true, false);
    for (const QString &folder : folders) {
        const QString file = FileUtilities::FolderSlash(folder) + QStringLiteral("User.xml");
        if (!QFile::exists(file))
            continue;
        auto *user = new TarveloUser;
        user->setFilepath(file);
        user->reload();
        if (user->getGUID().trimmed().isEmpty()) {
            // Made from the folder's name, so it is the same at every start, and kept in memory:
            // the file, maybe a broken one, stays as it is for a person to look at. The next
            // edit of the subject stores it.
            user->setAutoSave(false);
            user->setGUID(QUuid::createUuidV5(SubjectGuidNamespace, QDir(folder).dirName())
                              .toString(QUuid::WithoutBraces));
            user->setAutoSave(true);
        }
        m_users << user;
    }
    emit usersUpdated();
}

TarveloUser *TarveloModel::findUser(const QString &guid) const
{
    // An empty argument means no subject.
    for (TarveloUser *user : m_users) {
        if (!guid.isEmpty() && user->getGUID() == guid)
            return user;
    }
    return nullptr;
}

void TarveloModel::selectUser(const QString &guid)
{
    m_currentUser = findUser(guid);
    // An unknown GUID, an empty one too, clears the remembered subject.
    m_settings->setLastUserGuid(m_currentUser ? m_currentUser->getGUID() : QString());
    emit userSelected();
}

QString TarveloModel::userFolder(const TarveloUser *user) const
{
    const QString path = user->getFilepath();
    if (!path.isEmpty()) {
        const QFileInfo folder(QFileInfo(path).absolutePath());
        if (folder.absolutePath() == QDir(m_recordsFolder).absolutePath())
            return FileUtilities::FolderSlash(folder.absoluteFilePath());
    }
    return m_recordsFolder + user->folderName() + QLatin1Char('/');
}

void TarveloModel::addUser(TarveloUser *user)
{
    user->saveIn(m_recordsFolder);
    reloadUsers();
    selectUser(user->getGUID());
}

bool TarveloModel::updateUser(const QString &guid, TarveloUser *edited)
{
    const TarveloUser *stored = findUser(guid);
    QString folder = userFolder(stored ? stored : edited);
    bool moved = true;
    // Only a changed name moves the folder; a folder named by hand stays as long as the name does.
    if (stored && stored->folderName() != edited->folderName()) {
        const QString target = m_recordsFolder + edited->folderName();
        moved = QDir().rename(QDir::cleanPath(folder), target);
        if (moved)
            folder = target;
    }
    edited->saveInFolder(folder);
    reloadUsers();
    selectUser(edited->getGUID());
    return moved;
}

bool TarveloModel::removeUser(const QString &guid)
{
    bool removed = true;
    if (const TarveloUser *user = findUser(guid)) {
        const QString folder = QDir::cleanPath(userFolder(user));
        removed = !QFileInfo::exists(folder) || QFile::moveToTrash(folder);
    }
    reloadUsers();
    // Sessions of a removed subject would go into a folder that nobody lists.
    if (m_currentUser && m_currentUser->getGUID() == guid)
        selectUser(QString());
    return removed;
}

TarveloSession *TarveloModel::session() const
{
    return m_recorder->session();
}

bool TarveloModel::sessionRunning() const
{
    return m_recorder->isRunning();
}

void TarveloModel::handleDeviceMessage(const QString &message)
{
    m_recorder->handleReport(message, m_currentScriptTitle, m_currentUser);
}

void TarveloModel::finishSession()
{
    m_recorder->finish(m_currentUser);
}

void TarveloModel::abortSession()
{
    qDebug() << "ABORT!";
    m_device->sendCommand(DeviceProtocol::Stop);
    if (sessionRunning())
        finishSession();
}
