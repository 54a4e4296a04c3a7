#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>

// The message boxes of AppHelper. They have no parent and always stay on top.
namespace AppHelper {

// True exactly when the first button was chosen; closing the box counts as no.
bool confirmDialog(const QString &title, const QString &text, QMessageBox::Icon icon,
                   const QStringList &buttons = QStringList());

// Note the order: the text comes first, then the title.
void warningMessage(const QString &text, const QString &title, QMessageBox::Icon icon);

} // namespace AppHelper
