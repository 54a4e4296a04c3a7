#include "PageDatabase.h"

PageDatabase::PageDatabase(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
{
    Q_UNUSED(model) // the page's content arrives with its own work
}
