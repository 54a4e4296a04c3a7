#include "UserEditor.h"

#include "data/TarveloUser.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/PropertyListControl.h"
#include "foundation/widgets/UIHelper.h"
#include "foundation/widgets/WidgetBuilders.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>

namespace {
QPushButton *button(const char *icon, const QString &text, const char *objectName)
{
    return makeIconButton(
        MediaHelper::icon(QStringLiteral(":/resources/Images/") + QLatin1String(icon)), text,
        QString(), QLatin1String(objectName), QSize(24, 24));
}
} // namespace

UserEditor::UserEditor(const TarveloUser *source, QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_user(new TarveloUser(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    UIHelper::ChangeBackground(this, Qt::white);
    if (source) {
        m_user->copyFrom(source);
        setWindowTitle(tr("Редактирование респондента"));
    } else {
        m_user->loadDefaults();
        // Now rather than at Create: a cancelled editor leaves nothing anywhere.
        m_user->createGuid();
        setWindowTitle(tr("Создание респондента"));
    }

    m_form = new PropertyListControl(m_user);
    m_form->setStyleSheet(QStringLiteral("QLineEdit { min-width: 320px; }"));
    // The window opens as large as the form needs; the form alone would ask for nothing.
    m_form->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_form->setAutoFocus(true);

    auto *buttons = new QHBoxLayout;
    if (source) {
        QPushButton *remove = button("delete.svg", tr("Удалить"), "negative");
        connect(remove, &QPushButton::clicked, this, &UserEditor::confirmRemoval);
        buttons->addWidget(remove);
    }
    buttons->addStretch();
    QPushButton *ok = button("done.svg", source ? tr("Изменить") : tr("Создать"), "positive");
    QPushButton *cancel = button("close.svg", tr("Отмена"), "negative");
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    connect(ok, &QPushButton::clicked, this, [this] {
        emit accept();
        close();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        emit this->cancel();
        close();
    });

    auto *grid = new QGridLayout(this);
    grid->addWidget(m_form, 0, 0);
    grid->setRowStretch(0, 100);
    grid->addLayout(buttons, 1, 0);
}

void UserEditor::confirmRemoval()
{
    if (!AppHelper::confirmDialog(tr("Удаление"),
                                  tr("Удалить этого респондента со всеми сессиями?"),
                                  QMessageBox::Information))
        return;
    emit removeUser();
    close();
}
