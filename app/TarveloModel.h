#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class TarveloScript;
class TarveloSettings;

// The one central object: lays out the data folder, owns the settings, knows all script titles,
// holds the current script and tells the pages of every change. Replaced scripts are
// deliberately not destroyed: views keep pointers to them after they have dropped out of the
// model.
class TarveloModel : public QObject
{
    Q_OBJECT
public:
    explicit TarveloModel(QObject *parent = nullptr);
    ~TarveloModel() override;

    // The process-wide model; null until the constructor has finished.
    static TarveloModel *instance();

    QString rootFolder() const { return m_rootFolder; }
    QString recordsFolder() const { return m_recordsFolder; }
    QString scriptsFolder() const { return m_scriptsFolder; }
    TarveloSettings *settings() const { return m_settings; }
    TarveloScript *currentScript() const { return m_currentScript; }
    QString currentScriptTitle() const { return m_currentScriptTitle; }
    QStringList scriptTitles() const { return m_scriptTitles; }

    void setCurrentScriptTitle(const QString &title) { m_currentScriptTitle = title; }
    void reloadScripts();
    void selectScript(const QString &title);
    // Save writes the current script under its (possibly new) title; both ways the list and
    // the script are read again, which is all that cancelling takes.
    void commitScript(bool save);
    void removeCurrentScript(bool refresh);
    bool isTitleFree(const QString &title, const QString &own) const;

signals:
    void scriptChanged();
    void scriptsUpdated();

private:
    QString scriptPath(const QString &title) const;
    QString rememberedScriptTitle() const;
    void rememberScriptTitle();

    QString m_rootFolder;
    QString m_recordsFolder;
    QString m_scriptsFolder;
    TarveloSettings *m_settings = nullptr;
    TarveloScript *m_currentScript = nullptr;
    QString m_currentScriptTitle;
    QStringList m_scriptTitles;
};
