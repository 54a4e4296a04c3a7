#pragma once

#include "frame/HeaderedWidget.h"

// Tab 0: the current script. The editor and its buttons come with the script editor; the header
// already lets the operator pick and play a script.
class PageScript : public HeaderedWidget
{
    Q_OBJECT
public:
    explicit PageScript(TarveloModel *model, QWidget *parent = nullptr);
};
