#include "UIHelper.h"

#include <QPalette>
#include <QWidget>

void UIHelper::ChangeBackground(QWidget *widget, const QColor &colour)
{
    QPalette palette = widget->palette();
    palette.setBrush(QPalette::All, QPalette::Window, QBrush(colour));
    widget->setAutoFillBackground(true);
    widget->setPalette(palette);
}
