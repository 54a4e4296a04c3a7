#pragma once

#include "foundation/ConnectionHelper.h"

#include <QWidget>

class QListWidget;
class QListWidgetItem;
class QPushButton;
class TarveloModel;
class TarveloSession;
class TarveloSessionWidget;

// Tab 2, the browser of what has been recorded: the subjects, the sessions of the selected one
// (loose sessions, recorded with no subject, under a pseudo-subject), and the stored session
// picked there, shown and exported as the live one is. Subjects are added, edited (a new name
// moves the folder) and removed here, and a stored session can go to the trash. The panes
// follow the model's current subject, whichever page changed it.
class PageDatabase : public QWidget
{
    Q_OBJECT
public:
    explicit PageDatabase(TarveloModel *model, QWidget *parent = nullptr);

    QListWidget *userList() const { return m_userList; }
    QListWidget *sessionList() const { return m_sessionList; }
    TarveloSessionWidget *sessionView() const { return m_sessionView; }
    QPushButton *editUserButton() const { return m_editUserButton; }
    QString openSessionPath() const { return m_openSessionPath; }

public slots:
    // After the operator's confirmation, the session on show goes to the trash.
    void removeOpenSession();

private:
    void fillUsers();
    void syncSelection();
    void fillSessions(const QString &folder);
    void onUserSelectionChanged();
    void openItem(const QListWidgetItem *item);
    void showSession(TarveloSession *session, const QString &path);
    void showSessionMenu(const QPoint &position);
    void editCurrentUser();

    TarveloSessionWidget *m_sessionView;
    TarveloSession *m_openSession = nullptr;
    QString m_openSessionPath;
    TarveloModel *m_model;
    QListWidget *m_userList;
    QListWidget *m_sessionList;
    QPushButton *m_editUserButton;
    ConnectionHelper m_connections;
};
