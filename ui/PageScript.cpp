#include "PageScript.h"

#include <QVBoxLayout>

PageScript::PageScript(TarveloModel *model, QWidget *parent)
    : HeaderedWidget(model, parent)
{
    pageLayout()->addStretch(100);
}
