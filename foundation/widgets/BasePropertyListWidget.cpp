#include "BasePropertyListWidget.h"

#include "propertyviews/BasePropertyView.h"

#include <QGridLayout>

BasePropertyListWidget::BasePropertyListWidget(QWidget *parent)
    : QWidget(parent)
    , m_outerGrid(new QGridLayout(this))
{
    m_outerGrid->setContentsMargins(0, 0, 0, 0);
}

PropertyWidgetInfo BasePropertyListWidget::getWidgetInfo(int index) const
{
    return m_infos.value(index);
}

PropertyWidgetInfo BasePropertyListWidget::getWidgetInfo(const QString &name) const
{
    for (const PropertyWidgetInfo &info : m_infos) {
        if (info.name.compare(name, Qt::CaseInsensitive) == 0)
            return info;
    }
    return {};
}

void BasePropertyListWidget::setFocusAt(const PropertyWidgetInfo &info)
{
    if (info.view && info.view->getEditor())
        info.view->getEditor()->setFocus();
}

void BasePropertyListWidget::setFocusAtFirst()
{
    setFocusAt(getWidgetInfo(0));
}

void BasePropertyListWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_autoFocus)
        setFocusAtFirst();
}
