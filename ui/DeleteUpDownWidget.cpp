#include "DeleteUpDownWidget.h"

#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"

#include <QHBoxLayout>
#include <QPushButton>

DeleteUpDownWidget::DeleteUpDownWidget(QWidget *parent)
    : QWidget(parent)
{
    // The stage editor alone builds 30 rows: icons and texts are fetched once.
    struct Look
    {
        QIcon icon;
        QString toolTip;
    };
    static const Look looks[] = {
        {MediaHelper::icon(QStringLiteral(":/resources/Images/delete.svg")), tr("Удалить")},
        {MediaHelper::icon(QStringLiteral(":/resources/Images/chevron-up.svg")),
         tr("Переместить вверх")},
        {MediaHelper::icon(QStringLiteral(":/resources/Images/chevron-down.svg")),
         tr("Переместить вниз")},
    };
    const decltype(&DeleteUpDownWidget::onDelete) signalsInOrder[] = {
        &DeleteUpDownWidget::onDelete, &DeleteUpDownWidget::onUp, &DeleteUpDownWidget::onDown};

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (int i = 0; i < 3; ++i) {
        QPushButton *button =
            makeIconButton(looks[i].icon, QString(), looks[i].toolTip, QString(), QSize(24, 24));
        button->setIconSize(QSize(16, 16));
        connect(button, &QPushButton::clicked, this, signalsInOrder[i]);
        layout->addWidget(button);
    }
}
