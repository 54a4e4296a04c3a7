#include "MainWindow.h"

#include "app/TarveloModel.h"
#include "foundation/AppHelper.h"

#include <QTabWidget>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_model(new TarveloModel(this))
    , m_tabs(new QTabWidget(this))
{
    setWindowTitle(tr("Тарвело") + QLatin1Char(' ') + AppHelper::appVersion(true));
    setMinimumSize(800, 600);
    m_tabs->setIconSize(QSize(24, 24));
    setCentralWidget(m_tabs);
}
