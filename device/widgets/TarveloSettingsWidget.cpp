#include "TarveloSettingsWidget.h"

#include "ComUpdaterWidget.h"
#include "app/TarveloModel.h"
#include "device/DeviceProtocol.h"
#include "device/FirmwarePackage.h"
#include "device/TarveloDevice.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace DeviceProtocol;

namespace {
constexpr int SerialNumberLength = 8;

QLabel *captionLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setStyleSheet(QStringLiteral("color: #999"));
    return label;
}
} // namespace

TarveloSettingsWidget::TarveloSettingsWidget(bool editSerial, QWidget *parent)
    : QDialog(parent)
{
    TarveloModel *model = TarveloModel::instance();
    m_device = model ? model->device() : nullptr;
    if (!m_device)
        return;
    setWindowTitle(tr("Device"));
    const bool connected = m_device->isConnected();
    // A lost link leaves the last values in the device object; they are no longer the truth.
    const QString serialNumber = connected ? m_device->serialNumber() : QString();

    m_panel = new QWidget;
    m_panel->setContentsMargins(0, 0, 0, 0);
    auto *grid = new QGridLayout(m_panel);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(captionLabel(tr("SN")), 0, 0);
    if (editSerial) {
        m_serialEdit = new QLineEdit(serialNumber);
        m_serialEdit->setMaxLength(SerialNumberLength);
        grid->addWidget(m_serialEdit, 0, 1);
        auto *writeButton = new QPushButton(QStringLiteral(">"));
        connect(writeButton, &QPushButton::clicked, this,
                &TarveloSettingsWidget::writeSerialNumber);
        grid->addWidget(writeButton, 0, 2);
    } else {
        m_serialLabel = new QLabel(serialNumber);
        grid->addWidget(m_serialLabel, 0, 1);
    }
    grid->addWidget(captionLabel(tr("Version")), 1, 0);
    m_versionLabel = new QLabel(connected ? m_device->version() : QString());
    grid->addWidget(m_versionLabel, 1, 1);
    m_audioBox = new QCheckBox(tr("Invert audio"));
    m_pedalsBox = new QCheckBox(tr("Invert pedals"));
    m_flashAllBox = new QCheckBox(tr("Flash all leds on start"));
    grid->addWidget(m_audioBox, 2, 1);
    grid->addWidget(m_pedalsBox, 3, 1);
    grid->addWidget(m_flashAllBox, 4, 1);

    // Outside the panel, so that new firmware can be written to a box that doesn't answer.
    auto *flashButton = new QPushButton(tr("Flash"));
    connect(flashButton, &QPushButton::clicked, this, &TarveloSettingsWidget::updateFirmware);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(m_panel, 100);
    layout->addWidget(flashButton, 1, Qt::AlignRight);

    // The boxes wait for the box's own word on its options.
    for (QCheckBox *box : {m_audioBox, m_pedalsBox, m_flashAllBox})
        box->setEnabled(false);
    m_connections << connect(m_device, &TarveloDevice::connectedChanged, this, [this](bool on) {
        m_panel->setEnabled(on);
        if (on)
            return;
        showSerialNumber(QString());
        m_versionLabel->clear();
    });
    m_connections << connect(m_device, &TarveloDevice::gotSerialNumber, this,
                             [this] { showSerialNumber(m_device->serialNumber()); });
    m_connections << connect(m_device, &TarveloDevice::gotVersion, this,
                             [this] { m_versionLabel->setText(m_device->version()); });
    m_panel->setEnabled(connected);
    m_connections << connect(m_device, &TarveloDevice::gotSettings, this,
                             [this](bool audioInvert, bool pedalsInvert, bool flashAll) {
                                 m_audioBox->setChecked(audioInvert);
                                 m_pedalsBox->setChecked(pedalsInvert);
                                 m_flashAllBox->setChecked(flashAll);
                                 for (QCheckBox *box : {m_audioBox, m_pedalsBox, m_flashAllBox})
                                     box->setEnabled(true);
                             });

    connect(m_audioBox, &QCheckBox::clicked, this,
            [this] { changeOption(AudioInvert, m_device->audioInvert(), m_audioBox); });
    // A click on the pedals' box greys the audio box, not itself, until the box answers:
    // operators know the dialog this way.
    connect(m_pedalsBox, &QCheckBox::clicked, this,
            [this] { changeOption(PedalInvert, m_device->pedalInvert(), m_audioBox); });
    connect(m_flashAllBox, &QCheckBox::clicked, this,
            [this] { changeOption(FlashAll, m_device->flashAll(), m_flashAllBox); });
    m_device->sendCommand(GetSettings);
}

void TarveloSettingsWidget::changeOption(const QString &key, bool current, QCheckBox *waiting)
{
    waiting->setEnabled(false);
    // The new value is the opposite of what the box last said, whatever the box shows now.
    m_device->sendCommand(SetSettings + key + QLatin1Char('=') + (current ? '0' : '1')
                          + QLatin1Char(';'));
    m_device->sendCommand(GetSettings);
}

void TarveloSettingsWidget::writeSerialNumber()
{
    m_device->sendCommand(WriteSerialNumber + m_serialEdit->text());
    m_device->sendCommand(AskSerialNumber);
    m_device->sendCommand(AskVersion);
}

void TarveloSettingsWidget::showSerialNumber(const QString &text)
{
    if (m_serialEdit)
        m_serialEdit->setText(text);
    if (m_serialLabel)
        m_serialLabel->setText(text);
}

void TarveloSettingsWidget::updateFirmware()
{
    QStringList ports;
    if (m_device->isConnected())
        ports << QLatin1Char('-') + m_device->portName();
    // The flashing tool needs the port for itself.
    m_device->setSearchEnabled(false);
    ComUpdaterWidget updater(FirmwarePackage::AtMega2560, QStringLiteral("tvl"),
                             FirmwarePackage::SelfPrefix + QStringLiteral("avrdude"), ports);
    updater.exec();
    m_device->setSearchEnabled(true);
}
