#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QtTest>

// Answers whatever window asks the operator something, so that none blocks a test: a message
// box by the button named answer (without one: yes or OK; without those it is closed), a save
// dialog with saveAs and saveFilter (without saveAs: with the name it offers, kept in offered),
// a context menu by its first entry. For widget tests only.
class ModalAnswerer : public QObject
{
public:
    QString answer;
    QStringList messages; // title and text of each message box, in turn
    QString saveAs;
    QString offered;
    QString saveFilter;

    ModalAnswerer()
    {
        m_watch.setInterval(10);
        connect(&m_watch, &QTimer::timeout, this, &ModalAnswerer::look);
        m_watch.start();
    }

private:
    void look()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            // The save dialog's own question whether to replace a file is not the program's.
            if (!qobject_cast<QFileDialog *>(box->parentWidget()))
                messages << box->windowTitle() << box->text();
            for (QAbstractButton *button : box->buttons()) {
                const QMessageBox::ButtonRole role = box->buttonRole(button);
                if (answer.isEmpty()
                        ? role == QMessageBox::YesRole || role == QMessageBox::AcceptRole
                        : button->text() == answer)
                    return button->click();
            }
            box->done(-1);
        } else if (auto *dialog = qobject_cast<QFileDialog *>(modal);
                   dialog && dialog != m_dialog) {
            m_dialog = dialog;
            if (saveAs.isEmpty()) {
                offered = dialog->selectedFiles().value(0);
            } else {
                dialog->selectNameFilter(saveFilter);
                dialog->selectFile(saveAs);
            }
            // Queued: the question whether to replace a file needs this watch free.
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        } else if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
            if (m_menu == menu)
                return;
            m_menu = menu;
            // Chosen from a timer of its own: the entry's confirmation needs this one free.
            QTimer::singleShot(0, menu, [menu] {
                menu->setActiveAction(menu->actions().value(0));
                QTest::keyClick(menu, Qt::Key_Return);
            });
        }
    }

    QTimer m_watch;
    QPointer<QMenu> m_menu;
    QPointer<QFileDialog> m_dialog;
};
