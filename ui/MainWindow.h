#pragma once

#include <QMainWindow>

#include <array>
#include <functional>

class PageScript;
class QTabWidget;
class TarveloModel;
class TarveloStatusBar;

// The one top-level window: it creates and owns the model, shows the five pages in fixed tab
// order, the connection status under them, and the version overlay in the top right corner. It
// says when the data folder can't be used and when a file couldn't be written, and it doesn't
// close over a running session without asking.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    // Tab indices that other code relies on.
    enum Page {
        ScriptPage = 0,
        SessionPage = 1,
        DatabasePage = 2,
        DevicePage = 3,
        SettingsPage = 4
    };

    // What a click on the status bar does, by the modifiers held: Control opens the device's
    // settings dialog, and Control with the service chord Shift+Alt opens it with the serial
    // number editable.
    enum class StatusClick { ShowDevicePage, DeviceSettings, DeviceSettingsWithSerial };
    static StatusClick statusClickAction(Qt::KeyboardModifiers modifiers);

    explicit MainWindow(QWidget *parent = nullptr);

    TarveloModel *model() const { return m_model; }
    QTabWidget *tabs() const { return m_tabs; }
    // The page of a tab, built now if it hasn't been shown yet: a start builds only the page it
    // shows. The tab itself holds a frame around the page.
    QWidget *page(Page which);
    TarveloStatusBar *tarveloStatusBar() const { return m_statusBar; }
    QWidget *versionHolder() const { return m_versionHolder; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    // Unsaved script edits are asked about first, and a running
    // session asks whether to abort it; the operator may stay.
    void closeEvent(QCloseEvent *event) override;

private:
    void onStatusBarClicked();
    void placeVersionHolder();
    // True when the window may close: no session runs, or the operator chose to abort it.
    bool sessionLetsClose();
    void showWriteFailure(const QString &path, const QString &reason);

    TarveloModel *m_model;
    QTabWidget *m_tabs = nullptr;
    std::array<std::function<QWidget *()>, SettingsPage + 1> m_pageMakers;
    std::array<QWidget *, SettingsPage + 1> m_pages {};
    PageScript *m_scriptPage = nullptr;
    TarveloStatusBar *m_statusBar = nullptr;
    QWidget *m_versionHolder = nullptr;
    // Files whose failure is on screen: the same file failing again meanwhile adds no box.
    QStringList m_failuresShown;
};
