#pragma once

#include "frame/BasePage.h"

// Tab 4: the application settings.
class PageSettings : public BasePage
{
    Q_OBJECT
public:
    explicit PageSettings(TarveloModel *model, QWidget *parent = nullptr);
};
