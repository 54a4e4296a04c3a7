#pragma once

#include "frame/BasePage.h"

// Tab 4: the application settings, as a form generated from their declaration.
class PageSettings : public BasePage
{
    Q_OBJECT
public:
    explicit PageSettings(TarveloModel *model, QWidget *parent = nullptr);
};
