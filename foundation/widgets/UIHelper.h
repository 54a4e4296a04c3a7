#pragma once

#include <QColor>

class QWidget;

class UIHelper
{
public:
    // Paints the widget's own background with a solid colour through its palette.
    static void ChangeBackground(QWidget *widget, const QColor &colour);
};
