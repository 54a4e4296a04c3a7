#include "AddUserButton.h"

#include "UserEditor.h"
#include "app/TarveloModel.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"

#include <QGridLayout>
#include <QPushButton>

AddUserButton::AddUserButton(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
{
    if (!model)
        return;
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    static const QIcon icon =
        MediaHelper::icon(QStringLiteral(":/resources/Images/add-account.svg"));
    QPushButton *button =
        makeIconButton(icon, QString(), tr("Добавить респондента"), QString(), QSize(24, 24));
    grid->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, model] {
        auto *editor = new UserEditor(nullptr, this);
        connect(editor, &UserEditor::accept, model,
                [model, editor] { model->addUser(editor->user()); });
        editor->show();
    });
}
