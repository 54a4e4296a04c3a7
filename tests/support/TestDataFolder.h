#pragma once

#include <QString>
#include <QTemporaryDir>

// A documents folder of a test's own: HOME points into a temporary folder and Qt's test mode
// keeps the user's real configuration out, so the model lays out its data folder in there and
// never sees an operator's records.
class TestDataFolder
{
public:
    TestDataFolder();

    bool isValid() const { return m_home.isValid(); }
    // <Documents>/Mirenthalic/Tarvelo/, with a slash at the end.
    QString root() const { return m_root; }
    QString scripts() const { return m_root + QStringLiteral("Scripts/"); }
    QString records() const { return m_root + QStringLiteral("Records/"); }

    // Writes "<title>.script" with the given stage lines, each as a script file has them.
    bool writeScript(const QString &title, const QStringList &stages) const;
    bool copyScript(const QString &path) const;
    // Drops the whole data folder, so the next model starts as on a fresh machine.
    void clear() const;

private:
    QTemporaryDir m_home;
    QString m_root;
};
