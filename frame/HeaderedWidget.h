#pragma once

#include "foundation/ConnectionHelper.h"

#include <QWidget>

class PlayScriptStopSessionButton;
class QComboBox;
class QHBoxLayout;
class QVBoxLayout;
class TarveloModel;

// A page with the grey header row that the Script and Session pages share: the script picker,
// the page's own buttons, the subject picker and the play/stop button. Derived pages add their
// content to pageLayout() with stretch 100.
class HeaderedWidget : public QWidget
{
    Q_OBJECT
public:
    explicit HeaderedWidget(TarveloModel *model, QWidget *parent = nullptr);

    QComboBox *scriptCombo() const { return m_scriptCombo; }
    PlayScriptStopSessionButton *playButton() const { return m_playButton; }

protected:
    TarveloModel *model() const { return m_model; }
    QHBoxLayout *headerButtons() const { return m_headerButtons; }
    QVBoxLayout *pageLayout() const { return m_pageLayout; }

private:
    void refillScripts();
    void selectScript(int index);

    QHBoxLayout *m_headerLayout = nullptr;
    QVBoxLayout *m_pageLayout = nullptr;
    QHBoxLayout *m_headerButtons = nullptr;
    TarveloModel *m_model;
    QComboBox *m_scriptCombo = nullptr;
    ConnectionHelper m_connections;
    PlayScriptStopSessionButton *m_playButton = nullptr;
};
