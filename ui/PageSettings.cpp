#include "PageSettings.h"

#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "foundation/widgets/PropertyListControl.h"

#include <QGridLayout>

PageSettings::PageSettings(TarveloModel *model, QWidget *parent)
    : BasePage(model, parent)
{
    // The whole page is the live form over the settings, which store themselves at each input.
    auto *grid = new QGridLayout(this);
    grid->addWidget(
        new PropertyListControl(model->settings(), QString(), PropertyListControl::ViewMode_All), 0,
        0);
}
