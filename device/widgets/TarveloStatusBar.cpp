#include "TarveloStatusBar.h"

#include "device/TarveloDevice.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/UIHelper.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

TarveloStatusBar::TarveloStatusBar(TarveloDevice *device, QWidget *parent)
    : QWidget(parent)
    , m_device(device)
{
    if (!m_device)
        return;
    setContentsMargins(0, 0, 0, 0);
    UIHelper::ChangeBackground(this, QColor(0xDDDDDD));

    m_button = new QPushButton;
    m_button->setFlat(true);
    m_button->setIconSize(QSize(24, 24));
    m_button->setContentsMargins(0, 0, 0, 0);
    m_button->setStyleSheet(QStringLiteral("padding: 0; border:0; background: transparent"));
    connect(m_button, &QPushButton::clicked, this, &TarveloStatusBar::tarveloClicked);

    m_refusal = new QLabel;
    m_refusal->setObjectName(QStringLiteral("portRefusal"));
    m_refusal->setStyleSheet(QStringLiteral("color: #CC3300"));

    m_progressBar = new QProgressBar;
    m_progressBar->setFixedHeight(24);
    m_progressBar->hide();

    m_notice = new QLabel;
    m_notice->setTextFormat(Qt::RichText);
    connect(m_notice, &QLabel::linkActivated, this,
            [this] { AppHelper::handToDesktop(DesktopShell::Action::ShowInFolder, m_noticeFile); });

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(m_button);
    layout->addWidget(m_refusal);
    layout->addSpacing(16);
    layout->addWidget(m_notice);
    layout->addStretch(100);
    layout->addWidget(m_progressBar);

    m_connections
        << connect(m_device, &TarveloDevice::connectedChanged, this,
                   &TarveloStatusBar::updateStatus)
        << connect(m_device, &TarveloDevice::gotPortName, this, &TarveloStatusBar::updateStatus)
        << connect(m_device, &TarveloDevice::gotVersion, this, &TarveloStatusBar::updateStatus)
        << connect(m_device, &TarveloDevice::gotSerialNumber, this, &TarveloStatusBar::updateStatus)
        << connect(m_device, &TarveloDevice::loadProgress, this, &TarveloStatusBar::showProgress)
        << connect(m_device, &TarveloDevice::uploadFailed, this,
                   [this] { showNotice(tr("Сценарий не загружен: связь с устройством прервалась")); })
        << connect(m_device, &TarveloDevice::portRefused, this, &TarveloStatusBar::updateStatus);
    updateStatus();
}

QString TarveloStatusBar::statusText(const TarveloDevice *device)
{
    if (!device->isConnected())
        return tr("Тарвело не найден");
    QStringList details;
    if (!device->serialNumber().isEmpty())
        details << QStringLiteral("SN:") + device->serialNumber();
    if (!device->version().isEmpty())
        details << QStringLiteral("v") + device->version();
    if (!device->portName().isEmpty())
        details << device->portName();
    QString text = tr("Тарвело подключен");
    if (!details.isEmpty())
        text += QStringLiteral(" (") + details.join(QStringLiteral(", ")) + QLatin1Char(')');
    return text;
}

QString TarveloStatusBar::refusalText(const TarveloDevice *device)
{
    const QMap<QString, QString> refused = device->refusedPorts();
    if (refused.isEmpty())
        return QString();
    const QString ports = refused.keys().join(QStringLiteral(", "));
    // One system gives its serial ports one group.
    const QString group = refused.first();
    if (group.isEmpty())
        return tr("Порт %1 недоступен: его занимает другая программа.").arg(ports);
    return tr("Нет прав на порт %1: добавьте пользователя в группу «%2» и войдите в систему "
              "заново.")
        .arg(ports, group);
}

void TarveloStatusBar::updateStatus()
{
    const bool connected = m_device->isConnected();
    m_button->setIcon(
        MediaHelper::icon(connected ? QStringLiteral(":/resources/Images/connected.svg")
                                    : QStringLiteral(":/resources/Images/disconnected.svg")));
    m_button->setText(statusText(m_device));
    // Only worth reading while the box is missing.
    m_refusal->setText(connected ? QString() : refusalText(m_device));
    m_refusal->setVisible(!m_refusal->text().isEmpty());
}

void TarveloStatusBar::showProgress(int progress)
{
    if (progress < 0) {
        m_progressBar->hide();
        return;
    }
    m_progressBar->setValue(progress);
    m_progressBar->show();
}

void TarveloStatusBar::showExported(const QString &filePath)
{
    showNotice(tr("Экспортировано: %1").arg(QFileInfo(filePath).fileName()), filePath);
}

void TarveloStatusBar::showNotice(const QString &text, const QString &file)
{
    if (!m_notice) // a bar without a device shows nothing
        return;
    m_noticeFile = file;
    QString html = text.toHtmlEscaped();
    if (!file.isEmpty())
        html += QStringLiteral(" <a href=\"folder\">") + tr("Показать в папке")
            + QStringLiteral("</a>");
    m_notice->setText(html);
}
