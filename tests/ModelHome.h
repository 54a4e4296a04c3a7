#pragma once

#include "data/TarveloScript.h"
#include "data/TarveloUser.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>

// A data folder of the model's own for a test program: documents resolve under a temporary
// HOME, and test mode keeps the real user configuration out of it. Each test starts from an
// empty folder; the subjects, scripts and settings it needs are written through the program's
// own classes, as the pages would write them.
class ModelHome
{
public:
    // For initTestCase; false if the documents folder doesn't resolve under the temporary HOME.
    bool setUp()
    {
        if (!m_home.isValid())
            return false;
        qputenv("HOME", QFile::encodeName(m_home.path()));
        QStandardPaths::setTestModeEnabled(true);
        m_root = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
            + QStringLiteral("/Mirenthalic/Tarvelo/");
        return m_root.startsWith(m_home.path());
    }
    void clear() { QDir(m_root).removeRecursively(); }

    QString root() const { return m_root; }
    QString records() const { return m_root + QStringLiteral("Records/"); }
    QString scripts() const { return m_root + QStringLiteral("Scripts/"); }
    QString settingsFile() const { return m_root + QStringLiteral("Settings.xml"); }

    void writeSettings(const QByteArray &body) const
    {
        QDir().mkpath(m_root);
        QFile file(settingsFile());
        if (file.open(QIODevice::WriteOnly))
            file.write("<TarveloSettings>" + body + "</TarveloSettings>");
    }
    QByteArray storedSettings() const { return read(settingsFile()); }

    // Files a subject as the subject editor does and returns its folder, with a slash.
    QString addSubject(const QString &lastName, const QString &guid) const
    {
        TarveloUser user;
        user.setLastName(lastName);
        user.setGUID(guid);
        user.saveIn(records());
        return records() + user.fullName(true) + QLatin1Char('/');
    }

    void addScript(const QString &title, const QStringList &stageLines) const
    {
        TarveloScript script;
        script.setTitle(title);
        for (const QString &line : stageLines)
            script.addStage(ScriptStage::fromText(line));
        QDir().mkpath(scripts());
        script.save(scripts() + title + QStringLiteral(".script"));
    }

    // The session files directly in a folder, by name.
    static QStringList sessionFiles(const QString &folder)
    {
        return QDir(folder).entryList({QStringLiteral("*.session")}, QDir::Files, QDir::Name);
    }
    // Every session file anywhere under the records folder, relative to it.
    QStringList allSessionFiles() const
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

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Read with Qt's JSON parser alone, not with the session reader under test.
    static QJsonObject readJson(const QString &path)
    {
        return QJsonDocument::fromJson(read(path)).object();
    }

private:
    QTemporaryDir m_home;
    QString m_root;
};
