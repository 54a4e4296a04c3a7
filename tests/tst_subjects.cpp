#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/widgets/BasePropertyListWidget.h"
#include "foundation/widgets/PropertyListControl.h"
#include "foundation/widgets/propertyviews/BasePropertyView.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/TestDataFolder.h"
#include "ui/AddUserButton.h"
#include "ui/CurrentUserComboBox.h"
#include "ui/PageDatabase.h"
#include "ui/UserEditor.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString Ivanov = QStringLiteral("Иванов (") + Guid + QLatin1Char(')');
const QString Petrov = QStringLiteral("Петров (") + Guid + QLatin1Char(')');
const QString FirstSession = QStringLiteral("2024.03.05-14.20.31.session");
const QString SecondSession = QStringLiteral("2024.03.06-09.00.00.session");

using Message = QPair<QString, QString>; // title, text

// Answers whatever window asks the operator something: message boxes (yes, or OK), the
// export's save dialog and the page's context menu (its first entry). None may block a test.
class Answerer : public QObject
{
public:
    Answerer()
    {
        m_watch.setInterval(10);
        connect(&m_watch, &QTimer::timeout, this, &Answerer::look);
        m_watch.start();
    }

    QList<Message> messages;
    QString saveAs;
    QString saveFilter;

private:
    void look()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            messages.append({box->windowTitle(), box->text()});
            const QList<QAbstractButton *> buttons = box->buttons();
            for (QAbstractButton *button : buttons) {
                const QMessageBox::ButtonRole role = box->buttonRole(button);
                if (role == QMessageBox::YesRole || role == QMessageBox::AcceptRole)
                    button->click();
            }
        } else if (auto *dialog = qobject_cast<QFileDialog *>(modal)) {
            dialog->selectNameFilter(saveFilter);
            dialog->selectFile(saveAs);
            static_cast<QDialog *>(dialog)->accept(); // public there
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
};

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
}

// The editor that a click has just opened among owner's children.
UserEditor *openedEditor(const QWidget *owner)
{
    const QList<UserEditor *> editors = owner->findChildren<UserEditor *>();
    for (UserEditor *editor : editors) {
        if (editor->isVisible())
            return editor;
    }
    return nullptr;
}

void type(UserEditor *editor, const char *property, const QString &text)
{
    auto *edit =
        qobject_cast<QLineEdit *>(editor->form()->getWidgetInfo(property).view->getEditor());
    QVERIFY(edit);
    edit->selectAll();
    // Key by key as a keyboard gives them; QTest's own key clicks know no Cyrillic.
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(edit, &press);
    }
}

void press(const QWidget *window, const QString &text)
{
    const QList<QPushButton *> buttons = window->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == text) {
            button->click();
            return;
        }
    }
    QFAIL(qPrintable(QStringLiteral("no button ") + text));
}

QString trashed(const QString &name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Trash/files/") + name;
}
} // namespace

class SubjectsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void newSubjectIsFiledAndPickedInTheHeader();
    void editingTheCommentKeepsTheFolder();
    void renameMovesTheFolderWithItsSessions();
    void failedMoveWarnsAndKeepsOneSubject();
    void removedSubjectGoesToTheTrash();
    void looseSessionsShowUnderThePseudoSubject();
    void storedSessionOpensWithExportAndExports();
    void removedSessionGoesToTheTrash();
    void sessionDeletedOutsideKeepsItsRowAndPickingItDoesNothing();

private:
    // Ivanov with one session (two with both), selected, on a subject page of its own.
    QString startWithIvanov(bool twoSessions = false);
    UserEditor *editIvanov();

    TestDataFolder m_data;
    QTemporaryDir m_out;
    std::unique_ptr<Answerer> m_answers;
    std::unique_ptr<TarveloModel> m_model;
    std::unique_ptr<PageDatabase> m_page;
};

void SubjectsTest::initTestCase()
{
    QVERIFY(m_data.isValid() && m_out.isValid());
    // The desktop's trash of this test, whichever way the trash is looked up. Its folder
    // exists on a desktop; the trash is not made where it doesn't.
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_out.filePath(QStringLiteral("share"))));
    QVERIFY(trashed(QString()).startsWith(QDir::homePath()));
    QVERIFY(QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)));
}

void SubjectsTest::init()
{
    m_data.clear();
    m_answers = std::make_unique<Answerer>();
}

void SubjectsTest::cleanup()
{
    m_page.reset();
    m_model.reset();
}

QString SubjectsTest::startWithIvanov(bool twoSessions)
{
    const QString folder = m_data.addSubject(QStringLiteral("Иванов"), Guid);
    const QString session = QStringLiteral(TARVELO_TEST_DATA "/example.session");
    QFile::copy(session, folder + FirstSession);
    if (twoSessions)
        QFile::copy(session, folder + SecondSession);
    m_model = std::make_unique<TarveloModel>();
    m_model->selectUser(Guid);
    m_page = std::make_unique<PageDatabase>(m_model.get());
    return folder;
}

UserEditor *SubjectsTest::editIvanov()
{
    m_page->editUserButton()->click();
    return openedEditor(m_page.get());
}

void SubjectsTest::newSubjectIsFiledAndPickedInTheHeader()
{
    TarveloModel model;
    CurrentUserComboBox header(&model);
    QComboBox *combo = header.comboBox();
    QCOMPARE(combo->currentText(), QStringLiteral("Не выбран"));
    QPushButton *add = header.findChild<AddUserButton *>()->findChild<QPushButton *>();

    add->click();
    UserEditor *cancelled = openedEditor(&header);
    QVERIFY(cancelled && !cancelled->user()->getGUID().isEmpty());
    press(cancelled, QStringLiteral("Отмена"));
    QCOMPARE(entries(m_data.records()), QStringList());

    add->click();
    UserEditor *editor = openedEditor(&header);
    QVERIFY(editor);
    type(editor, "LastName", QStringLiteral("Петрова"));
    const QString guid = editor->user()->getGUID();
    press(editor, QStringLiteral("Создать"));
    const QString folder =
        m_data.records() + QStringLiteral("Петрова (") + guid + QStringLiteral(")/");
    QVERIFY(TestFiles::read(folder + QStringLiteral("User.xml"))
                .contains("<LastName>Петрова</LastName>"));
    QCOMPARE(model.currentUser()->getGUID(), guid);
    QCOMPARE(combo->currentText(), QStringLiteral("Петрова"));

    combo->setCurrentIndex(0);
    QVERIFY(!model.currentUser());
    QVERIFY(m_answers->messages.isEmpty());
}

void SubjectsTest::editingTheCommentKeepsTheFolder()
{
    const QString folder = startWithIvanov();
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    type(editor, "Comment", QStringLiteral("левша"));
    press(editor, QStringLiteral("Изменить"));
    QCOMPARE(entries(m_data.records()), QStringList {Ivanov});
    QVERIFY(
        TestFiles::read(folder + QStringLiteral("User.xml")).contains("<Comment>левша</Comment>"));
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList {FirstSession});
    QVERIFY(m_answers->messages.isEmpty());
}

void SubjectsTest::renameMovesTheFolderWithItsSessions()
{
    startWithIvanov();
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    type(editor, "LastName", QStringLiteral("Петров"));
    press(editor, QStringLiteral("Изменить"));
    QCOMPARE(entries(m_data.records()), QStringList {Petrov});
    QCOMPARE(TestDataFolder::sessionFiles(m_data.records() + Petrov), QStringList {FirstSession});
    QCOMPARE(m_page->userList()->currentItem()->text(), QStringLiteral("Петров"));
    QCOMPARE(m_page->sessionList()->count(), 1);
    QVERIFY(m_answers->messages.isEmpty());
}

void SubjectsTest::failedMoveWarnsAndKeepsOneSubject()
{
    const QString folder = startWithIvanov();
    QVERIFY(QDir().mkpath(m_data.records() + Petrov + QStringLiteral("/taken")));
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    type(editor, "LastName", QStringLiteral("Петров"));
    press(editor, QStringLiteral("Изменить"));
    QCOMPARE(m_answers->messages,
             QList<Message> {Message("Ошибка", "Невозможно перенести папку респондента")});
    // The edits stay with the sessions, in the old folder; no second subject appears.
    QVERIFY(TestFiles::read(folder + QStringLiteral("User.xml")).contains("<LastName>Петров<"));
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList {FirstSession});
    QCOMPARE(m_model->users().size(), 1);
    QCOMPARE(m_model->currentUser()->getLastName(), QStringLiteral("Петров"));
}

void SubjectsTest::removedSubjectGoesToTheTrash()
{
    startWithIvanov();
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    press(editor, QStringLiteral("Удалить"));
    QCOMPARE(m_answers->messages,
             QList<Message> {Message("Удаление", "Удалить этого респондента со всеми сессиями?")});
    QCOMPARE(entries(m_data.records()), QStringList());
    QVERIFY(QFile::exists(trashed(Ivanov + QLatin1Char('/') + FirstSession)));
    QVERIFY(!m_model->currentUser());
    QCOMPARE(m_page->userList()->count(), 0);
}

void SubjectsTest::looseSessionsShowUnderThePseudoSubject()
{
    startWithIvanov();
    QCOMPARE(m_page->userList()->count(), 1);
    const QString loose = m_data.records() + SecondSession;
    QVERIFY(QFile::copy(QStringLiteral(TARVELO_TEST_DATA "/example.session"), loose));
    m_model->reloadUsers();
    QCOMPARE(m_page->userList()->count(), 2);
    QListWidgetItem *pseudo = m_page->userList()->item(1);
    QCOMPARE(pseudo->text(), QStringLiteral("[Неизвестный]"));

    m_page->userList()->setCurrentItem(pseudo);
    QVERIFY(!m_model->currentUser());
    QCOMPARE(m_page->sessionList()->count(), 1);
    QCOMPARE(m_page->sessionList()->item(0)->data(Qt::UserRole).toString(),
             QFileInfo(loose).absoluteFilePath());
    m_page->userList()->setCurrentRow(0);
    QCOMPARE(m_model->currentUser()->getGUID(), Guid);
    QCOMPARE(m_page->sessionList()->item(0)->text(), FirstSession.chopped(8));
}

void SubjectsTest::storedSessionOpensWithExportAndExports()
{
    startWithIvanov();
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    m_page->sessionList()->setCurrentRow(0);
    TarveloSessionWidget *view = m_page->sessionView();
    QVERIFY(view->session() && view->session()->loaded());
    QVERIFY(!view->exportButton()->isHidden());
    QVERIFY(view->recordCheckBox()->isHidden());

    m_answers->saveAs = m_out.filePath(QStringLiteral("stored.csv"));
    m_answers->saveFilter = QStringLiteral("CSV (*.csv)");
    view->exportButton()->click();
    const QString csv = QString::fromUtf8(TestFiles::read(m_answers->saveAs));
    QVERIFY2(csv.contains(QStringLiteral("2024-03-05 14.20\r\n№;Этап;")), qPrintable(csv));
}

void SubjectsTest::removedSessionGoesToTheTrash()
{
    const QString folder = startWithIvanov(true);
    m_page->sessionList()->setCurrentRow(0);
    emit m_page->sessionList()->customContextMenuRequested(QPoint(4, 4));
    QCOMPARE(m_answers->messages,
             QList<Message> {
                 Message("Удаление сессии", "Действительно удалить результаты этой сессии?")});
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList {SecondSession});
    QVERIFY(QFile::exists(trashed(FirstSession)));
    QCOMPARE(m_page->sessionList()->count(), 1);
    QVERIFY(!m_page->sessionView()->session());
}

void SubjectsTest::sessionDeletedOutsideKeepsItsRowAndPickingItDoesNothing()
{
    const QString folder = startWithIvanov(true);
    m_page->sessionList()->setCurrentRow(0);
    const TarveloSession *shown = m_page->sessionView()->session();
    QVERIFY(shown);
    QVERIFY(QFile::remove(folder + SecondSession));
    m_page->sessionList()->setCurrentRow(1);
    QCOMPARE(m_page->sessionView()->session(), shown);
    QCOMPARE(m_page->openSessionPath(), QFileInfo(folder + FirstSession).absoluteFilePath());
    QCOMPARE(m_page->sessionList()->count(), 2);
}

QTEST_MAIN(SubjectsTest)
#include "tst_subjects.moc"
