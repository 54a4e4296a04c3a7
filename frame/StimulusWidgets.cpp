#include "StimulusWidgets.h"

#include "data/TarveloCommon.h"
#include "foundation/widgets/MediaHelper.h"

#include <QCoreApplication>
#include <QHash>
#include <QMetaEnum>
#include <QPushButton>

namespace {
// Pictures by stimulus value, under ":/resources/Images/stims/".
const char *const StimulusImages[TarveloCommon::StimulusCount] = {
    "green1.png",       "white1.png",      "blue1.png",       "red1.png",        "yellow1.png",
    "blue2.png",        "red2.png",        "yellow2.png",     "white2.png",      "green2.png",
    "whiteL.png",       "whiteR.png",      "audioLeftLo.png", "audioLeftHi.png", "audioRightLo.png",
    "audioRightHi.png", "audioBothLo.png", "audioBothHi.png",
};

QHash<int, QIcon> makeIcons()
{
    QHash<int, QIcon> icons;
    for (int value = 0; value < TarveloCommon::StimulusCount; ++value)
        icons.insert(value,
                     MediaHelper::icon(QStringLiteral(":/resources/Images/stims/")
                                       + QLatin1String(StimulusImages[value])));
    return icons;
}
} // namespace

QIcon stimulusIcon(int stimulus)
{
    static QHash<int, QIcon> icons = makeIcons();
    return icons[stimulus]; // an unknown value gets an empty icon, kept from then on
}

QString stimulusName(int stimulus)
{
    const QMetaEnum stimuli = QMetaEnum::fromType<TarveloCommon::Stimulus>();
    return QCoreApplication::translate("Stimulus", stimuli.valueToKey(stimulus));
}

QPushButton *stimulusButton(int stimulus)
{
    auto *button =
        new QPushButton(stimulusIcon(stimulus), QLatin1Char(' ') + stimulusName(stimulus));
    button->setIconSize(QSize(16, 16));
    // Without "border: none" the Fusion style fills a transparent button black.
    button->setStyleSheet(QStringLiteral(
        "QPushButton { background: transparent; border: none; padding: 4px; text-align: left;}"));
    return button;
}
