#include "BasePage.h"

BasePage::BasePage(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
}
