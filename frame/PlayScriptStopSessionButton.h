#pragma once

#include "foundation/ConnectionHelper.h"

#include <QStackedWidget>

class QPushButton;
class TarveloModel;

// Play while no session runs, stop while one does. The stack only follows the model; it never
// starts or stops anything by itself, and stop asks first, as the two share one spot and a
// second click on play would otherwise end the run at once.
class PlayScriptStopSessionButton : public QStackedWidget
{
    Q_OBJECT
public:
    explicit PlayScriptStopSessionButton(TarveloModel *model, QWidget *parent = nullptr);

    QPushButton *playButton() const { return m_play; }
    QPushButton *stopButton() const { return m_stop; }

    // A page's own reason to hold play back (empty lets it go); the stop button stays usable.
    void setLock(const QString &reason);

private:
    void updateState();
    void play();
    void stop();
    // Why play can't start now, as its tool tip says; empty when it can.
    QString playProblem() const;

    TarveloModel *m_model;
    ConnectionHelper m_connections;
    QPushButton *m_stop = nullptr;
    QPushButton *m_play = nullptr;
    QString m_lock;
};
