#include "WidgetBuilders.h"

#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>

QPushButton *makeIconButton(const QIcon &icon, const QString &text, const QString &toolTip,
                            const QString &objectName, const QSize &iconSize)
{
    auto *button = new QPushButton(icon, text);
    if (!objectName.isEmpty())
        button->setObjectName(objectName);
    button->setFlat(true);
    button->setToolTip(toolTip);
    button->setIconSize(iconSize);
    button->setStyleSheet(QStringLiteral("padding: 0"));
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

QLabel *makeHeaderLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QStringLiteral("propertyHeaderLabel"));
    return label;
}

QComboBox *makeUniformComboBox()
{
    auto *combo = new QComboBox;
    qobject_cast<QListView *>(combo->view())->setUniformItemSizes(true);
    return combo;
}
