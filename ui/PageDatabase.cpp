#include "PageDatabase.h"

#include "frame/AddUserButton.h"
#include "frame/SubjectItems.h"
#include "frame/UserEditor.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "foundation/FileUtilities.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"
#include "session/widgets/TarveloSessionWidget.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>

namespace {
QListWidget *makeList()
{
    auto *list = new QListWidget;
    list->setIconSize(QSize(24, 24));
    return list;
}

QWidget *makePane(QGridLayout **grid)
{
    auto *pane = new QWidget;
    pane->setMinimumWidth(180);
    *grid = new QGridLayout(pane);
    (*grid)->setContentsMargins(0, 0, 0, 0);
    (*grid)->setSpacing(4);
    return pane;
}
} // namespace

PageDatabase::PageDatabase(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_sessionView(new TarveloSessionWidget(nullptr))
    , m_model(model)
    , m_userList(makeList())
    , m_sessionList(makeList())
    , m_editUserButton(
          makeIconButton(MediaHelper::icon(QStringLiteral(":/resources/Images/edit.svg")),
                         QString(), tr("Редактирвоать респондента"), QString(), QSize(24, 24)))
{
    QGridLayout *grid = nullptr;
    QWidget *subjects = makePane(&grid);
    grid->addWidget(makeHeaderLabel(tr("Респонденты")), 0, 0, Qt::AlignLeft);
    grid->setColumnStretch(0, 100);
    grid->addWidget(new AddUserButton(model), 0, 1, Qt::AlignRight);
    grid->addWidget(m_editUserButton, 0, 2, Qt::AlignRight);
    grid->addWidget(m_userList, 1, 0, 1, 4);

    QWidget *sessions = makePane(&grid);
    auto *sessionsLabel = new QLabel(tr("Сессии"));
    sessionsLabel->setMinimumHeight(26);
    grid->addWidget(sessionsLabel, 0, 0);
    grid->addWidget(m_sessionList, 1, 0, 1, 2);
    m_sessionList->setContextMenuPolicy(Qt::CustomContextMenu);

    auto *splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(subjects);
    splitter->addWidget(sessions);
    splitter->addWidget(m_sessionView);
    splitter->setSizes({200, 200, 500});
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);

    connect(m_userList, &QListWidget::itemSelectionChanged, this,
            &PageDatabase::onUserSelectionChanged);
    connect(m_sessionList, &QListWidget::currentItemChanged, this, &PageDatabase::openItem);
    connect(m_sessionList, &QWidget::customContextMenuRequested, this,
            &PageDatabase::showSessionMenu);
    connect(m_editUserButton, &QPushButton::clicked, this, &PageDatabase::editCurrentUser);
    m_connections << connect(model, &TarveloModel::usersUpdated, this, &PageDatabase::fillUsers)
                  << connect(model, &TarveloModel::userSelected, this, &PageDatabase::syncSelection)
                  << connect(model, &TarveloModel::sessionFinished, this,
                             &PageDatabase::syncSelection);
    fillUsers();
}

void PageDatabase::fillUsers()
{
    {
        const QSignalBlocker blocker(m_userList);
        m_userList->clear();
        const QList<TarveloUser *> users = m_model->users();
        for (const TarveloUser *user : users) {
            auto *item =
                new QListWidgetItem(SubjectItems::icon(user), user->fullName(false), m_userList);
            item->setData(Qt::UserRole, user->getGUID());
        }
        if (!FileUtilities::getFilesOfType(m_model->recordsFolder(), TarveloSession::fileSuffix(),
                                           false, true)
                 .isEmpty()) {
            auto *item = new QListWidgetItem(
                SubjectItems::incognitoIcon(),
                QLatin1Char('[') + tr("Неизвестный") + QLatin1Char(']'), m_userList);
            item->setForeground(Qt::gray);
            item->setData(Qt::UserRole, SubjectItems::unknownKey());
        }
    }
    syncSelection();
}

void PageDatabase::syncSelection()
{
    QString key = SubjectItems::unknownKey();
    QString folder = m_model->recordsFolder();
    if (const TarveloUser *user = m_model->currentUser()) {
        key = user->getGUID();
        folder = m_model->userFolder(user);
    }
    {
        const QSignalBlocker blocker(m_userList);
        for (int i = 0; i < m_userList->count(); ++i) {
            if (m_userList->item(i)->data(Qt::UserRole).toString() == key) {
                m_userList->setCurrentRow(i);
                break;
            }
        }
    }
    fillSessions(folder);
}

void PageDatabase::fillSessions(const QString &folder)
{
    const QStringList paths =
        FileUtilities::getFilesOfType(folder.isEmpty() ? m_model->recordsFolder() : folder,
                                      TarveloSession::fileSuffix(), false, true);
    {
        const QSignalBlocker blocker(m_sessionList);
        m_sessionList->clear();
        static const QIcon icon =
            MediaHelper::icon(QStringLiteral(":/resources/Images/session.svg"));
        for (const QString &path : paths) {
            auto *item =
                new QListWidgetItem(icon, FileUtilities::filename(path, false), m_sessionList);
            item->setData(Qt::UserRole, path);
            // A refill, after a run or a selection, keeps the session on show if it is listed.
            if (path == m_openSessionPath)
                m_sessionList->setCurrentItem(item);
        }
    }
    if (!m_sessionList->currentItem())
        showSession(nullptr, QString());
}

void PageDatabase::onUserSelectionChanged()
{
    const QList<QListWidgetItem *> selected = m_userList->selectedItems();
    if (selected.isEmpty()) {
        m_sessionList->clear();
        showSession(nullptr, QString());
        return;
    }
    m_model->selectUser(selected.constFirst()->data(Qt::UserRole).toString());
}

void PageDatabase::openItem(const QListWidgetItem *item)
{
    if (!item) {
        showSession(nullptr, QString());
        return;
    }
    // A file deleted from outside leaves the former session on show.
    const QString path = item->data(Qt::UserRole).toString();
    if (!QFileInfo::exists(path))
        return;
    TarveloSession *session = TarveloSession::load(path);
    session->setLoaded(true);
    showSession(session, path);
}

void PageDatabase::showSession(TarveloSession *session, const QString &path)
{
    m_sessionView->setSession(session);
    // Deleted later: an export of the former session may still be asking for its file name.
    if (m_openSession)
        m_openSession->deleteLater();
    m_openSession = session;
    if (session)
        session->setParent(this);
    m_openSessionPath = path;
}

void PageDatabase::showSessionMenu(const QPoint &position)
{
    // The menu acts on the session on show, not on the row under the cursor.
    if (!m_openSession)
        return;
    QMenu menu;
    menu.addAction(MediaHelper::icon(QStringLiteral(":/icons/delete.svg")), tr("Удалить сессию"),
                   this, &PageDatabase::removeOpenSession);
    menu.exec(m_sessionList->viewport()->mapToGlobal(position));
}

void PageDatabase::removeOpenSession()
{
    const QString path = m_openSessionPath;
    if (!m_openSession
        || !AppHelper::confirmDialog(tr("Удаление сессии"),
                                     tr("Действительно удалить результаты этой сессии?"),
                                     QMessageBox::Information))
        return;
    if (!QFile::moveToTrash(path))
        QMessageBox::warning(this, tr("Ошибка"), tr("Невозможно удалить сессию"), QMessageBox::Ok);
    syncSelection();
}

void PageDatabase::editCurrentUser()
{
    const TarveloUser *user = m_model->currentUser();
    if (!user)
        return;
    // The subject is found again by the GUID it had, whatever the editor or another page does
    // in the meantime.
    const QString guid = user->getGUID();
    auto *editor = new UserEditor(user, this);
    connect(editor, &UserEditor::accept, this, [this, editor, guid] {
        if (!m_model->updateUser(guid, editor->user()))
            QMessageBox::warning(this, tr("Ошибка"), tr("Невозможно перенести папку респондента"),
                                 QMessageBox::Ok);
    });
    connect(editor, &UserEditor::removeUser, this, [this, guid] {
        if (!m_model->removeUser(guid))
            QMessageBox::warning(this, tr("Ошибка"), tr("Невозможно удалить папку респондента"),
                                 QMessageBox::Ok);
    });
    editor->show();
}
