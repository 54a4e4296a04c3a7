#include "PropertyTabWidget.h"

#include "PropertyListControl.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "foundation/AbstractSettings.h"

#include <QGridLayout>
#include <QTabBar>
#include <QTabWidget>

PropertyTabWidget::PropertyTabWidget(AbstractSettings *settings, QWidget *parent)
    : QWidget(parent)
    , m_tabs(new QTabWidget)
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tabs);
    const QStringList categories = settings->metaDescriptor()->categories();
    for (const QString &category : categories) {
        auto *control =
            new PropertyListControl(settings, category, PropertyListControl::ViewMode_Category);
        control->setContentsMargins(8, 8, 8, 8);
        const int index = m_tabs->addTab(control, PropertyListControl::categoryTitle(category));
        m_tabs->tabBar()->setTabData(index, category);
        connect(control, &PropertyListControl::propertyVisibilityChanged, this,
                [this, control](int visible) {
                    m_tabs->setTabVisible(m_tabs->indexOf(control), visible > 0);
                });
        control->setManageCategoryVisibility(true);
    }
}

int PropertyTabWidget::tabCount() const
{
    return m_tabs->count();
}

void PropertyTabWidget::moveTab(const QString &name, int index, bool select)
{
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (m_tabs->tabBar()->tabData(i).toString().compare(name, Qt::CaseInsensitive) == 0) {
            m_tabs->tabBar()->moveTab(i, index);
            if (select)
                m_tabs->setCurrentIndex(index);
            return;
        }
    }
}
