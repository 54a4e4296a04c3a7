#include "AppDialogs.h"

#include <QCoreApplication>
#include <QPushButton>

namespace AppHelper {

bool confirmDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                   const QStringList &buttons)
{
    QMessageBox box(icon, title, text);
    box.setTextFormat(Qt::PlainText);
    QPushButton *yes = box.addButton(
        buttons.size() > 0 ? buttons.at(0) : QCoreApplication::translate("Generic", "Yes"),
        QMessageBox::YesRole);
    box.addButton(buttons.size() > 1 ? buttons.at(1) : QCoreApplication::translate("Generic", "No"),
                  QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.setWindowFlags(box.windowFlags() | Qt::WindowStaysOnTopHint);
    box.exec();
    return box.clickedButton() == yes;
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
