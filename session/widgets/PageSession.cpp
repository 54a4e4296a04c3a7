#include "PageSession.h"

#include "TarveloSessionWidget.h"

#include <QVBoxLayout>

PageSession::PageSession(TarveloModel *model, QWidget *parent)
    : HeaderedWidget(model, parent)
{
    if (!model)
        return;
    m_sessionWidget = new TarveloSessionWidget(model);
    pageLayout()->addWidget(m_sessionWidget, 100);
}
