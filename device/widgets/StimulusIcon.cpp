#include "StimulusIcon.h"

#include "app/TarveloCommon.h"
#include "foundation/widgets/MediaHelper.h"

QIcon stimulusIcon(int stimulus)
{
    static const char *const images[TarveloCommon::StimulusCount] = {
        "green1",      "white1",      "blue1",        "red1",         "yellow1",     "blue2",
        "red2",        "yellow2",     "white2",       "green2",       "whiteL",      "whiteR",
        "audioLeftLo", "audioLeftHi", "audioRightLo", "audioRightHi", "audioBothLo", "audioBothHi",
    };
    if (unsigned(stimulus) >= unsigned(TarveloCommon::StimulusCount))
        return QIcon();
    return MediaHelper::icon(
        QStringLiteral(":/resources/Images/stims/%1.png").arg(QLatin1String(images[stimulus])));
}
