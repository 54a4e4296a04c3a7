#pragma once

#include <QIcon>
#include <QSize>
#include <QString>

class QComboBox;
class QLabel;
class QPushButton;

// A flat icon button in the program's look. The object names "positive" and "negative" pick
// the green and the red-bordered button of the style sheet.
QPushButton *makeIconButton(const QIcon &icon, const QString &text, const QString &toolTip,
                            const QString &objectName, const QSize &iconSize);

QLabel *makeHeaderLabel(const QString &text);

// A combo box whose items are all of one height, such as lines of text with icons of one size:
// its list measures one item instead of each, which the style sheet makes costly and which
// happens again whenever the look changes.
QComboBox *makeUniformComboBox();
