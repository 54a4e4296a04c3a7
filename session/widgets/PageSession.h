#pragma once

#include "frame/HeaderedWidget.h"

class TarveloSessionWidget;

// Tab 1: the live session report under the shared header.
class PageSession : public HeaderedWidget
{
    Q_OBJECT
public:
    explicit PageSession(TarveloModel *model, QWidget *parent = nullptr);

    TarveloSessionWidget *sessionWidget() const { return m_sessionWidget; }

private:
    TarveloSessionWidget *m_sessionWidget = nullptr;
};
