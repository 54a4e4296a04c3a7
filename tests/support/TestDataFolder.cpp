#include "TestDataFolder.h"

#include "data/TarveloScript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

TestDataFolder::TestDataFolder()
{
    qputenv("HOME", QFile::encodeName(m_home.path()));
    QStandardPaths::setTestModeEnabled(true);
    m_root = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QStringLiteral("/Mirenthalic/Tarvelo/");
}

bool TestDataFolder::writeScript(const QString &title, const QStringList &stages) const
{
    TarveloScript script;
    script.setTitle(title);
    for (const QString &stage : stages)
        script.addStage(ScriptStage::fromText(stage));
    return QDir().mkpath(scripts()) && script.save(scripts() + title + QStringLiteral(".script"));
}

bool TestDataFolder::copyScript(const QString &path) const
{
    return QDir().mkpath(scripts()) && QFile::copy(path, scripts() + QFileInfo(path).fileName());
}

void TestDataFolder::clear() const
{
    QDir(m_root).removeRecursively();
}
