#pragma once

#include "support/TestFiles.h"

#include <QDir>
#include <QJsonObject>
#include <QTemporaryDir>

class TarveloScript;

// The model's data folder for a test program: HOME points into a temporary folder and Qt's test
// mode keeps the user's real configuration out, so the model lays out its data folder in there
// and never sees an operator's records. Subjects, scripts and settings a test needs are written
// through the program's own classes, as the pages would write them.
class TestDataFolder
{
public:
    // The temporary HOME is made in base.
    explicit TestDataFolder(const QString &base = QDir::tempPath());

    // For initTestCase; false if the documents folder doesn't resolve under the temporary HOME.
    bool isValid() const;
    // Drops the whole data folder, so the next model starts as on a fresh machine.
    void clear() const;

    // The documents folder, without a slash at the end, as QStandardPaths gives it.
    QString documents() const { return m_documents; }
    // <Documents>/Mirenthalic/Tarvelo/ and the folders in it, each with a slash at the end.
    QString root() const { return m_root; }
    QString records() const { return m_root + QStringLiteral("Records/"); }
    QString scripts() const { return m_root + QStringLiteral("Scripts/"); }
    QString settingsFile() const { return m_root + QStringLiteral("Settings.xml"); }

    // Writes "<title>.script" with the given stage lines, each as a script file has them.
    bool writeScript(const QString &title, const QStringList &stageLines) const;
    // Files a subject as the subject editor does and returns its folder, with a slash.
    QString addSubject(const QString &lastName, const QString &guid) const;

    // Writes the settings file with these elements inside its root element.
    bool writeSettings(const QByteArray &elements) const;
    QByteArray storedSettings() const { return TestFiles::read(settingsFile()); }

    // The session files directly in a folder, by name.
    static QStringList sessionFiles(const QString &folder);
    // Every session file anywhere under the records folder, relative to it, sorted.
    QStringList allSessionFiles() const;

    // Read with Qt's JSON parser alone, not with the session reader under test.
    static QJsonObject readJson(const QString &path);

private:
    QTemporaryDir m_home;
    QString m_documents;
    QString m_root;
};
