#pragma once

#include "ScriptStage.h"

#include <QList>
#include <QObject>
#include <QString>

// A test programme: title and texts, two tone frequencies and the stages in playing order.
// The script owns its stages. It emits nothing: editors that change it keep views in step.
class TarveloScript : public QObject
{
    Q_OBJECT
public:
    explicit TarveloScript(QObject *parent = nullptr);
    ~TarveloScript() override;

    // False only when the file can't be opened; content problems take defaults.
    bool load(const QString &path);
    // An empty path means the file last loaded. The file is replaced atomically; a failure is
    // announced on WriteFailures.
    bool save(const QString &path = QString()) const;

    QString toText() const;
    static TarveloScript *fromText(const QString &text, TarveloScript *script = nullptr);
    // The first line of the file, which the upload sends entry by entry.
    QString headerText() const;

    QList<ScriptStage *> stages() const { return m_stages; }
    // Whether any stage has a step: a script without one gives the box nothing to play.
    bool hasSteps() const;
    void addStage(ScriptStage *stage);
    // Takes the stage out of the list without destroying it; the caller owns it then.
    void removeStage(int index);

    QString title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    QString description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }
    QString message() const { return m_message; }
    void setMessage(const QString &message) { m_message = message; }
    QString filePath() const { return m_filePath; }
    quint16 toneLo() const { return m_toneLo; }
    void setToneLo(quint16 hz) { m_toneLo = hz; }
    quint16 toneHi() const { return m_toneHi; }
    void setToneHi(quint16 hz) { m_toneHi = hz; }
    bool fullDuration() const { return m_fullDuration; }
    void setFullDuration(bool on) { m_fullDuration = on; }

private:
    QList<ScriptStage *> m_stages;
    QString m_title;
    QString m_description;
    QString m_message;
    QString m_filePath;
    quint16 m_toneLo = 100;
    quint16 m_toneHi = 1000;
    bool m_fullDuration = false;
};
