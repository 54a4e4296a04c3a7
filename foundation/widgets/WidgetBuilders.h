#pragma once

#include <QIcon>
#include <QSize>
#include <QString>

class QLabel;
class QPushButton;

// A flat icon button in the program's look. The object names "positive" and "negative" pick
// the green and the red-bordered button of the style sheet.
QPushButton *makeIconButton(const QIcon &icon, const QString &text, const QString &toolTip,
                            const QString &objectName, const QSize &iconSize);

QLabel *makeHeaderLabel(const QString &text);
