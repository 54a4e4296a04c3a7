#include "MainWindow.h"

#include "AppStyle.h"
#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "device/TarveloDevice.h"
#include "device/widgets/PageDevice.h"
#include "device/widgets/TarveloSettingsWidget.h"
#include "device/widgets/TarveloStatusBar.h"
#include "foundation/AppHelper.h"
#include "foundation/NewVersionChecker.h"
#include "foundation/WriteFailures.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/NewVersionButton.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "ui/PageDatabase.h"
#include "ui/PageScript.h"
#include "ui/PageSettings.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QGridLayout>
#include <QGuiApplication>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

MainWindow::StatusClick MainWindow::statusClickAction(Qt::KeyboardModifiers modifiers)
{
    if (!(modifiers & Qt::ControlModifier))
        return StatusClick::ShowDevicePage;
    const Qt::KeyboardModifiers chord = Qt::ShiftModifier | Qt::AltModifier;
    return (modifiers & chord) == chord ? StatusClick::DeviceSettingsWithSerial
                                        : StatusClick::DeviceSettings;
}

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_model(new TarveloModel(this))
{
    TarveloDevice *device = m_model->device();
    setContentsMargins(0, 0, 0, 0);
    setWindowTitle(tr("Тарвело") + QLatin1Char(' ') + AppHelper::appVersion(true));
    setMinimumSize(800, 600);

    m_tabs = new QTabWidget;
    m_tabs->setIconSize(QSize(24, 24));
    m_tabs->setContentsMargins(20, 20, 20, 20);
    const auto icon = [](const char *name) {
        return MediaHelper::icon(QStringLiteral(":/resources/Images/") + QLatin1String(name));
    };
    m_pageMakers = {
        [this]() -> QWidget * { return new PageScript(m_model); },
        [this]() -> QWidget * { return new PageSession(m_model); },
        [this]() -> QWidget * { return new PageDatabase(m_model); },
        [device]() -> QWidget * { return new PageDevice(device); },
        [this]() -> QWidget * { return new PageSettings(m_model); },
    };
    const struct
    {
        const char *icon;
        QString title;
    } tabs[] = {{"script.svg", tr("Сценарии")},
                {"experiment.svg", tr("Сессия")},
                {"group.svg", tr("Респонденты")},
                {"device.svg", tr("Устройство")},
                {"settings.svg", tr("Настройки")}};
    for (const auto &tab : tabs) {
        auto *frame = new QWidget;
        auto *frameLayout = new QVBoxLayout(frame);
        frameLayout->setContentsMargins(0, 0, 0, 0);
        m_tabs->addTab(frame, icon(tab.icon), tab.title);
    }
    // Made before any page, since the pages' session views name their exports there.
    m_statusBar = new TarveloStatusBar(device);
    // The script page decides whether the operator may leave it, so it is there from the start.
    m_scriptPage = static_cast<PageScript *>(page(ScriptPage));
    connect(m_tabs, &QTabWidget::currentChanged, this,
            [this](int index) { page(static_cast<Page>(index)); });

    // The box streams its lamp and button states only while its page is showing.
    connect(m_tabs, &QTabWidget::currentChanged, device,
            [device](int index) { device->setStatusReports(index == DevicePage); });
    // An edit ends where the operator leaves the script page; unsaved changes are asked about,
    // and staying brings the page back.
    connect(m_tabs, &QTabWidget::currentChanged, this, [this](int index) {
        if (index != ScriptPage && !m_scriptPage->leaveEditing())
            m_tabs->setCurrentIndex(ScriptPage);
    });
    connect(m_model, &TarveloModel::sessionStarted, m_tabs,
            [this] { m_tabs->setCurrentIndex(SessionPage); });

    auto *central = new QWidget;
    central->setContentsMargins(0, 0, 0, 0);
    auto *grid = new QGridLayout(central);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    auto *pages = new QWidget;
    auto *pagesLayout = new QVBoxLayout(pages);
    pagesLayout->setContentsMargins(8, 8, 8, 8);
    pagesLayout->addWidget(m_tabs);
    grid->addWidget(pages, 0, 0);
    grid->addWidget(m_statusBar, 1, 0);
    grid->setRowStretch(0, 100);
    setCentralWidget(central);
    connect(m_statusBar, &TarveloStatusBar::tarveloClicked, this, &MainWindow::onStatusBarClicked);
    // Queued: a message box must not open inside the write that failed, such as a session's
    // in the middle of the box's reports.
    connect(WriteFailures::instance(), &WriteFailures::failed, this, &MainWindow::showWriteFailure,
            Qt::QueuedConnection);
    const QString folderProblem = m_model->dataFolderProblem();
    if (!folderProblem.isEmpty()) {
        QTimer::singleShot(0, this, [this, folderProblem] {
            AppHelper::warningMessage(
                tr("Папка данных \"%1\" недоступна: %2. Сценарии, сессии и настройки не "
                   "сохраняются, пока она недоступна.")
                    .arg(QDir::toNativeSeparators(m_model->rootFolder()), folderProblem),
                QString(), QMessageBox::Warning);
        });
    }

    // The look comes once the pages are built, since given before it is applied anew to every
    // subtree each time a widget gets a parent, and before the window sizes itself, so that it
    // is sized and polished once, in its own look.
    AppStyle::apply(*qApp);
    if (m_model->settings()->getStartMaximized())
        setWindowState(Qt::WindowMaximized);

    // The overlay carries the new-version button; it floats above the tab row, outside any layout.
    m_versionHolder = new QWidget(this);
    m_versionHolder->setFixedSize(200, 32);
    m_versionHolder->setContentsMargins(0, 8, 8, 0);
    auto *holderLayout = new QVBoxLayout(m_versionHolder);
    holderLayout->setContentsMargins(0, 0, 0, 0);
    auto *versionButton = new NewVersionButton(tr("New version") + QLatin1Char(' '), QString());
    holderLayout->addWidget(versionButton, 100, Qt::AlignRight);
    // Shown, button and all, only while a newer version is on offer: even empty it would take
    // the clicks on the end of the last tab at small widths.
    m_versionHolder->hide();
    connect(versionButton->checker(), &NewVersionChecker::onSetVisible, m_versionHolder,
            &QWidget::setVisible);
    placeVersionHolder();
}

QWidget *MainWindow::page(Page which)
{
    QWidget *&page = m_pages.at(which);
    if (!page) {
        page = m_pageMakers.at(which)();
        m_tabs->widget(which)->layout()->addWidget(page);
        // Every session view, the live one and that of stored sessions, names its exports in
        // the status bar.
        const QList<TarveloSessionWidget *> sessionViews =
            page->findChildren<TarveloSessionWidget *>();
        for (TarveloSessionWidget *view : sessionViews)
            connect(view, &TarveloSessionWidget::exported, m_statusBar,
                    &TarveloStatusBar::showExported);
    }
    return page;
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    placeVersionHolder();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (sessionLetsClose() && m_scriptPage->leaveEditing())
        event->accept();
    else
        event->ignore();
}

bool MainWindow::sessionLetsClose()
{
    if (!m_model->sessionRunning())
        return true;
    if (!AppHelper::confirmDialog(tr("Идёт сессия"),
                                  tr("Сессия ещё идёт. Прервать её и закрыть программу? "
                                     "Записанные этапы сохраняются."),
                                  QMessageBox::Question,
                                  {tr("Прервать и закрыть"), tr("Продолжить сессию")}))
        return false;
    // The box may have ended the run while the question was open; then it is saved already.
    if (m_model->sessionRunning())
        m_model->abortSession();
    return true;
}

void MainWindow::showWriteFailure(const QString &path, const QString &reason)
{
    if (m_failuresShown.contains(path))
        return;
    m_failuresShown << path;
    AppHelper::warningMessage(
        tr("Не удалось записать файл \"%1\": %2").arg(QDir::toNativeSeparators(path), reason),
        QString(), QMessageBox::Warning);
    m_failuresShown.removeOne(path);
}

void MainWindow::placeVersionHolder()
{
    if (m_versionHolder)
        m_versionHolder->move(width() - m_versionHolder->width(), 0);
}

void MainWindow::onStatusBarClicked()
{
    const StatusClick action = statusClickAction(QGuiApplication::keyboardModifiers());
    switch (action) {
    case StatusClick::ShowDevicePage:
        m_tabs->setCurrentIndex(DevicePage);
        break;
    case StatusClick::DeviceSettings:
    case StatusClick::DeviceSettingsWithSerial: {
        // Over whatever page is showing; the tab stays where it is.
        TarveloSettingsWidget dialog(action == StatusClick::DeviceSettingsWithSerial, this);
        dialog.exec();
        break;
    }
    }
}
