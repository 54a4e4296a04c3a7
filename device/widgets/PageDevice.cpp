#include "PageDevice.h"

#include "data/TarveloCommon.h"
#include "device/TarveloDevice.h"
#include "foundation/widgets/MediaHelper.h"
#include "frame/StimulusWidgets.h"

#include <QColor>
#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
using C = TarveloCommon;

const QColor Red(0xCC3300);
const QColor Green(0x66BB22);
const QColor Blue(0x0077CC);
const QColor White(0xEEEEEE);
const QColor Yellow(0xEECC00);
const QColor Face(0xCCCCCC);
const QColor Divider(0x999999);

constexpr int LampSize = 40;
constexpr int FrameSize = 48;
constexpr int WideWidth = 60;

// Raised while free, sunk while pressed or reported down.
QString controlStyle(const QColor &colour, bool square)
{
    return QStringLiteral("QPushButton { background: %1; border: 5px solid #999; border-right: "
                          "5px solid #333; border-bottom: 5px solid #333; %2 }  "
                          "QPushButton::pressed, QPushButton::checked { background: %3; border: "
                          "8px solid #999; border-left: 8px solid #333; border-top: 8px solid "
                          "#333; }")
        .arg(colour.name(),
             square ? QStringLiteral("border-radius: 0;") : QStringLiteral("border-radius: 20px;"),
             colour.darker(150).name());
}

QPushButton *flatButton(const QSize &size)
{
    auto *button = new QPushButton;
    button->setFlat(true);
    button->setFixedSize(size);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

QWidget *makeDivider()
{
    auto *divider = new QWidget;
    divider->setFixedHeight(8);
    divider->setStyleSheet(
        QStringLiteral("border: 1px solid #666; border-radius: 3px; background: ")
        + Divider.name());
    return divider;
}

QIcon litIcon()
{
    return MediaHelper::icon(QStringLiteral(":/resources/Images/alarm-light.svg"));
}
} // namespace

PageDevice::PageDevice(TarveloDevice *device, QWidget *parent)
    : QWidget(parent)
    , m_device(device)
{
    if (!m_device)
        return;
    auto *grid = new QGridLayout(this);
    grid->setSpacing(4);
    // Kept together as on the box rather than spread over the whole tab.
    grid->setAlignment(Qt::AlignCenter);
    const QColor top[] = {Green, White, Blue, Red, Yellow};
    const QColor middle[] = {Blue, Red, Yellow, White, Green};
    // Centred: the wide buttons below make the outer columns wider than a lamp.
    for (int column = 0; column < 5; ++column)
        grid->addWidget(makeLamp(C::LED_TOP_Green + column, top[column]), 0, column,
                        Qt::AlignCenter);
    for (int column = 0; column < 5; ++column)
        grid->addWidget(makeLamp(C::LED_MID_Blue + column, middle[column]), 1, column,
                        Qt::AlignCenter);
    grid->addWidget(makeFramedLamp(C::LED_BOT_WhiteLeft), 2, 1);
    grid->addWidget(makeFramedLamp(C::LED_BOT_WhiteRight), 2, 3);
    grid->addWidget(makeDivider(), 3, 0, 1, 5);

    grid->addWidget(makeButton(C::BTN_Left, White, true), 4, 0);
    grid->addWidget(makeButton(C::BTN_Green, Green, false), 4, 1);
    grid->addWidget(makeButton(C::BTN_Yellow, Yellow, false), 4, 3);
    grid->addWidget(makeButton(C::BTN_Right, White, true), 4, 4);
    // Red and blue share column 3, as the buttons stand on the box.
    grid->addWidget(makeButton(C::BTN_White, White, false), 5, 0, 1, 2, Qt::AlignCenter);
    grid->addWidget(makeButton(C::BTN_Red, Red, false), 5, 2, 1, 2);
    grid->addWidget(makeButton(C::BTN_Blue, Blue, false), 5, 3, 1, 2, Qt::AlignCenter);
    grid->addWidget(makeDivider(), 6, 0, 1, 5);

    grid->addWidget(makePedal(C::BTN_Pedal_Left, QStringLiteral("left")), 7, 0, Qt::AlignLeft);
    grid->addWidget(makeTone(C::AUDIO_Left_Hi), 7, 1, Qt::AlignRight);
    grid->addWidget(makeTone(C::AUDIO_Both_Hi), 7, 2, Qt::AlignCenter);
    grid->addWidget(makeTone(C::AUDIO_Right_Hi), 7, 3, Qt::AlignLeft);
    grid->addWidget(makePedal(C::BTN_Pedal_Right, QStringLiteral("right")), 7, 4, Qt::AlignRight);
    grid->addWidget(makeTone(C::AUDIO_Left_Lo), 8, 1, Qt::AlignRight);
    grid->addWidget(makeTone(C::AUDIO_Both_Lo), 8, 2, Qt::AlignCenter);
    grid->addWidget(makeTone(C::AUDIO_Right_Lo), 8, 3, Qt::AlignLeft);

    // Reports arrive queued, so one handled during an upload's event pass still gets here.
    m_connections << connect(
        m_device, &TarveloDevice::connectedChanged, this,
        [this] { setEnabled(m_device->isConnected()); }, Qt::DirectConnection);
    m_connections << connect(m_device, &TarveloDevice::ledChanged, this, &PageDevice::showLamps,
                             Qt::QueuedConnection);
    m_connections << connect(m_device, &TarveloDevice::btnChanged, this, &PageDevice::showButton,
                             Qt::QueuedConnection);
    setEnabled(m_device->isConnected());
}

QPushButton *PageDevice::makeLamp(int stimulus, const QColor &colour)
{
    QPushButton *lamp = flatButton(QSize(LampSize, LampSize));
    lamp->setContentsMargins(0, 0, 0, 0);
    // Big enough to tell a lit lamp at a glance.
    lamp->setIconSize(QSize(24, 24));
    lamp->setStyleSheet(QStringLiteral("QPushButton { background: %1; border-radius: 20px; border: "
                                       "1px solid #999; padding: 0} QPushButton::disabled { "
                                       "border-color: #999; background: %2 }")
                            .arg(colour.name(), colour.lighter(200).name()));
    connect(lamp, &QPushButton::clicked, this, [this, stimulus] { m_device->testLamp(stimulus); });
    m_lamps << lamp;
    return lamp;
}

QWidget *PageDevice::makeFramedLamp(int stimulus)
{
    auto *frame = new QWidget;
    frame->setFixedSize(FrameSize, FrameSize);
    frame->setStyleSheet(QStringLiteral("background: ") + QColor(Qt::black).name());
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(makeLamp(stimulus, White), 0, Qt::AlignCenter);
    return frame;
}

QPushButton *PageDevice::makeButton(int button, const QColor &colour, bool wide)
{
    // No click handler: the box is the only source of a control's state.
    QPushButton *control = flatButton(QSize(wide ? WideWidth : LampSize, LampSize));
    control->setCheckable(true);
    control->setStyleSheet(controlStyle(colour, wide));
    m_buttons.insert(button, control);
    return control;
}

QPushButton *PageDevice::makeTone(int stimulus)
{
    QPushButton *tone = flatButton(QSize(LampSize, LampSize));
    tone->setIcon(stimulusIcon(stimulus));
    tone->setIconSize(QSize(24, 24));
    tone->setStyleSheet(controlStyle(Face, true));
    connect(tone, &QPushButton::clicked, this,
            [this, stimulus] { m_device->testStimulus(stimulus, true); });
    return tone;
}

QPushButton *PageDevice::makePedal(int button, const QString &side)
{
    QPushButton *pedal = flatButton(QSize(LampSize, LampSize));
    pedal->setIcon(
        MediaHelper::icon(QStringLiteral(":/resources/Images/stims/pedal-%1.png").arg(side)));
    pedal->setIconSize(QSize(24, 24));
    pedal->setCheckable(true);
    pedal->setStyleSheet(controlStyle(Face, true));
    m_buttons.insert(button, pedal);
    return pedal;
}

void PageDevice::showLamps(const QList<bool> &leds)
{
    // A shorter report leaves the other lamps as they are; extra characters are ignored.
    const int count = qMin(leds.size(), m_lamps.size());
    for (int i = 0; i < count; ++i)
        m_lamps.at(i)->setIcon(leds.at(i) ? litIcon() : QIcon());
}

void PageDevice::showButton(int button, bool on)
{
    if (QPushButton *control = m_buttons.value(button))
        control->setChecked(on);
}
