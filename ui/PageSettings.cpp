#include "PageSettings.h"

PageSettings::PageSettings(TarveloModel *model, QWidget *parent)
    : BasePage(model, parent)
{
}
