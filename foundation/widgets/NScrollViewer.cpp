#include "NScrollViewer.h"

#include "NStackPanel.h"
#include "UIHelper.h"

#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>

NScrollViewer::NScrollViewer(Qt::Orientation orientation, QWidget *parent)
    : QWidget(parent)
    , m_scrollArea(new QScrollArea(this))
    , m_panel(new NStackPanel(orientation))
    , m_grid(new QGridLayout(this))
{
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(m_panel);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->addWidget(m_scrollArea, 0, 0);
    setContentsMargins(0, 0, 0, 0);
    setTransparentBackground(false);
}

void NScrollViewer::add(QWidget *widget)
{
    m_panel->add(widget);
    checkPlaceholder();
}

void NScrollViewer::remove(QWidget *widget)
{
    m_panel->remove(widget);
    checkPlaceholder();
}

void NScrollViewer::clear()
{
    m_panel->clear();
    checkPlaceholder();
}

int NScrollViewer::count() const
{
    return m_panel->count();
}

QWidget *NScrollViewer::itemAt(int index) const
{
    return m_panel->at(index);
}

void NScrollViewer::setItemAlignment(QWidget *widget, Qt::Alignment alignment)
{
    m_panel->setItemAlignment(widget, alignment);
}

void NScrollViewer::setItemAlignmentByIndex(int index, Qt::Alignment alignment)
{
    m_panel->setItemAlignmentByIndex(index, alignment);
}

void NScrollViewer::setItemPadding(int left, int top, int right, int bottom)
{
    m_panel->setItemPadding(left, top, right, bottom);
}

void NScrollViewer::setItemVisible(int index, bool visible)
{
    if (QWidget *widget = m_panel->at(index))
        widget->setVisible(visible);
}

void NScrollViewer::setSpacing(int spacing)
{
    m_panel->setSpacing(spacing);
}

void NScrollViewer::setBackground(const QColor &background, bool darkPanel)
{
    setBackgroundAndBorder(background, 0, Qt::black, darkPanel);
}

void NScrollViewer::setBackgroundAndBorder(const QColor &background, unsigned char borderWidth,
                                           const QColor &border, bool darkPanel)
{
    UIHelper::ChangeBackground(m_scrollArea, background);
    const QString colour =
        background == QColor(Qt::transparent) ? QStringLiteral("transparent") : background.name();
    const QString borderText = borderWidth == 0
        ? QStringLiteral("0")
        : QString::number(borderWidth) + QStringLiteral("px solid ") + border.name();
    QString sheet = QStringLiteral("QScrollArea { background: ") + colour
        + QStringLiteral("; border: ") + borderText
        + QStringLiteral("; } QScrollArea > QWidget > QWidget { background: ") + colour
        + QStringLiteral("; } ");
    if (darkPanel)
        sheet += QStringLiteral("QScrollArea > QWidget > QWidget { background: #000}");
    m_scrollArea->setStyleSheet(sheet);
}

void NScrollViewer::setTransparentBackground(bool darkPanel)
{
    setBackgroundAndBorder(Qt::transparent, 0, Qt::black, darkPanel);
}

void NScrollViewer::setPlaceholderText(const QString &text, Qt::Alignment alignment,
                                       const QString &objectName, int margin)
{
    auto *label = new QLabel(text);
    label->setWordWrap(true);
    label->setAlignment(alignment);
    label->setObjectName(objectName);
    label->setMargin(margin);
    setPlaceholderWidget(label, alignment);
}

void NScrollViewer::setPlaceholderWidget(QWidget *placeholder, Qt::Alignment alignment)
{
    if (m_placeholder) {
        m_grid->removeWidget(m_placeholder);
        m_placeholder->deleteLater();
    }
    m_placeholder = placeholder;
    if (m_placeholder)
        m_grid->addWidget(m_placeholder, 0, 0, alignment);
    checkPlaceholder();
}

void NScrollViewer::checkPlaceholder()
{
    if (m_placeholder)
        m_placeholder->setVisible(m_panel->count() == 0);
}
