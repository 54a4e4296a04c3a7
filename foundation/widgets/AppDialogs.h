#pragma once

#include "foundation/DesktopShell.h"

#include <QMessageBox>
#include <QString>
#include <QStringList>

// The message boxes of AppHelper. They have no parent and always stay on top, and show their
// texts as plain text: a file or subject name can't turn into markup there.
namespace AppHelper {

// True exactly when the first button was chosen; closing the box counts as no.
bool confirmDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                   const QStringList &buttons = QStringList());

// Asks with one button per choice, the last one the escape; gives the index of the button
// chosen, or -1 when the box was closed without one.
int choiceDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                 const QStringList &buttons);

// Note the order: the text comes first, then the title.
void warningMessage(const QString &text, const QString &title, QMessageBox::Icon icon);

// Hands the file to the desktop to open, or to show in its folder; a message says so when the
// system has no program that takes it.
void handToDesktop(DesktopShell::Action action, const QString &path);

} // namespace AppHelper
