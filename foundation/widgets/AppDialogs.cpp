#include "AppDialogs.h"

#include <QCoreApplication>
#include <QPushButton>

namespace AppHelper {

bool confirmDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                   const QStringList &buttons)
{
    return choiceDialog(
               title, text, icon,
               {buttons.size() > 0 ? buttons.at(0) : QCoreApplication::translate("Generic", "Yes"),
                buttons.size() > 1 ? buttons.at(1) : QCoreApplication::translate("Generic", "No")})
        == 0;
}

int choiceDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                 const QStringList &buttons)
{
    QMessageBox box(icon, title, text);
    box.setTextFormat(Qt::PlainText);
    QList<QAbstractButton *> added;
    for (int i = 0; i < buttons.size(); ++i) {
        const bool last = i == buttons.size() - 1;
        added << box.addButton(buttons.at(i),
                               i == 0     ? QMessageBox::YesRole
                                   : last ? QMessageBox::RejectRole
                                          : QMessageBox::NoRole);
    }
    if (!added.isEmpty())
        box.setDefaultButton(qobject_cast<QPushButton *>(added.constFirst()));
    box.setWindowFlags(box.windowFlags() | Qt::WindowStaysOnTopHint);
    box.exec();
    return added.indexOf(box.clickedButton());
}

void warningMessage(const QString &text, const QString &title, QMessageBox::Icon icon)
{
    QMessageBox box(icon, title, text, QMessageBox::NoButton, nullptr,
                    Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowStaysOnTopHint);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void handToDesktop(DesktopShell::Action action, const QString &path)
{
    const bool taken = action == DesktopShell::Action::OpenFile ? DesktopShell::openFile(path)
                                                                : DesktopShell::showInFolder(path);
    if (!taken)
        warningMessage(QCoreApplication::translate("Generic",
                                                   "Не удалось открыть \"%1\": в системе не "
                                                   "нашлось программы для этого.")
                           .arg(path),
                       QString(), QMessageBox::Warning);
}

} // namespace AppHelper
