#include "NStackPanel.h"

#include <QBoxLayout>

NStackPanel::NStackPanel(Qt::Orientation orientation, QWidget *parent)
    : QWidget(parent)
    , m_orientation(orientation)
    , m_layout(new QBoxLayout(
          orientation == Qt::Vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
}

void NStackPanel::add(QWidget *widget)
{
    if (!widget)
        return;
    m_items << widget;
    m_layout->addWidget(widget);
    realign();
}

NStackPanel &NStackPanel::operator<<(QWidget *widget)
{
    add(widget);
    return *this;
}

void NStackPanel::remove(QWidget *widget)
{
    if (!m_items.removeOne(widget))
        return;
    m_layout->removeWidget(widget);
    // Out of the layout alone it would stay a child, still drawn at its old place.
    widget->setParent(nullptr);
    realign();
}

void NStackPanel::clear()
{
    for (QWidget *widget : qAsConst(m_items)) {
        m_layout->removeWidget(widget);
        widget->hide();
        // Later, so that an item may clear the panel from its own signal.
        widget->deleteLater();
    }
    m_items.clear();
}

QWidget *NStackPanel::at(int index) const
{
    return m_items.value(index, nullptr);
}

void NStackPanel::setItemAlignment(QWidget *widget, Qt::Alignment alignment)
{
    m_layout->setAlignment(widget, alignment);
}

void NStackPanel::setItemAlignmentByIndex(int index, Qt::Alignment alignment)
{
    if (QWidget *widget = at(index))
        setItemAlignment(widget, alignment);
}

void NStackPanel::setItemPadding(int left, int top, int right, int bottom)
{
    m_layout->setContentsMargins(left, top, right, bottom);
}

void NStackPanel::setPadding(int padding)
{
    m_layout->setContentsMargins(padding, padding, padding, padding);
}

void NStackPanel::setSpacing(int spacing)
{
    m_layout->setSpacing(spacing);
}

void NStackPanel::setOrientation(Qt::Orientation orientation)
{
    m_orientation = orientation;
    m_layout->setDirection(orientation == Qt::Vertical ? QBoxLayout::TopToBottom
                                                       : QBoxLayout::LeftToRight);
    realign();
}

void NStackPanel::realign()
{
    const Qt::Alignment alignment = m_orientation == Qt::Vertical ? Qt::AlignTop : Qt::AlignLeft;
    for (int i = 0; i < m_items.size(); ++i) {
        QWidget *widget = m_items.at(i);
        m_layout->setAlignment(widget, alignment);
        m_layout->setStretchFactor(widget, i == m_items.size() - 1 ? 100 : 0);
    }
}
