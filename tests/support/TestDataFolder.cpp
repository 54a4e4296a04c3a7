#include "TestDataFolder.h"

#include "data/TarveloScript.h"
#include "data/TarveloUser.h"

#include <QDirIterator>
#include <QStandardPaths>

TestDataFolder::TestDataFolder(const QString &base)
    : m_home(base + QStringLiteral("/tarvelo-home-XXXXXX"))
{
    qputenv("HOME", QFile::encodeName(m_home.path()));
    QStandardPaths::setTestModeEnabled(true);
    m_documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    m_root = m_documents + QStringLiteral("/Mirenthalic/Tarvelo/");
}

bool TestDataFolder::isValid() const
{
    return m_home.isValid() && m_root.startsWith(m_home.path());
}

void TestDataFolder::clear() const
{
    QDir(m_root).removeRecursively();
}

bool TestDataFolder::writeScript(const QString &title, const QStringList &stageLines) const
{
    TarveloScript script;
    script.setTitle(title);
    for (const QString &line : stageLines)
        script.addStage(ScriptStage::fromText(line));
    return QDir().mkpath(scripts()) && script.save(scripts() + title + QStringLiteral(".script"));
}

QString TestDataFolder::addSubject(const QString &lastName, const QString &guid) const
{
    TarveloUser user;
    user.setLastName(lastName);
    user.setGUID(guid);
    user.saveIn(records());
    return records() + user.fullName(true) + QLatin1Char('/');
}

bool TestDataFolder::writeSettings(const QByteArray &elements) const
{
    return QDir().mkpath(m_root)
        && TestFiles::write(settingsFile(), "<TarveloSettings>" + elements + "</TarveloSettings>");
}

QStringList TestDataFolder::sessionFiles(const QString &folder)
{
    return QDir(folder).entryList({QStringLiteral("*.session")}, QDir::Files, QDir::Name);
}

QStringList TestDataFolder::allSessionFiles() const
{
    QStringList found;
    const QDir base(records());
    QDirIterator it(records(), {QStringLiteral("*.session")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        found << base.relativeFilePath(it.next());
    found.sort();
    return found;
}

QJsonObject TestDataFolder::readJson(const QString &path)
{
    return QJsonDocument::fromJson(TestFiles::read(path)).object();
}
