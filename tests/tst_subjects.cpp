#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/widgets/BasePropertyListWidget.h"
#include "foundation/widgets/PropertyListControl.h"
#include "foundation/widgets/propertyviews/BasePropertyView.h"
#include "frame/AddUserButton.h"
#include "frame/CurrentUserComboBox.h"
#include "frame/UserEditor.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/ModalAnswerer.h"
#include "support/TestDataFolder.h"
#include "ui/PageDatabase.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include <memory>

namespace {
const QString Guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString Ivanov = QStringLiteral("Ivanov (") + Guid + QLatin1Char(')');
const QString Petrov = QStringLiteral("Petrov (") + Guid + QLatin1Char(')');
const QString FirstSession = QStringLiteral("2024.03.05-14.20.31.session");
const QString SecondSession = QStringLiteral("2024.03.06-09.00.00.session");

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
    QTest::keyClicks(edit, text); // Latin letters only: QTest knows no others
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
    void editingASubject_data() { TestFiles::addRows(QStringLiteral("tables/subject_edits.txt")); }
    void editingASubject();
    void removedSubjectGoesToTheTrash();
    void looseSessionsShowUnderThePseudoSubject();
    void storedSessionsAreShownExportedAndTrashed();

private:
    // Ivanov with one session (two with both), selected, on a subject page of its own.
    QString startWithIvanov(bool twoSessions = false);
    UserEditor *editIvanov();

    TestDataFolder m_data;
    QTemporaryDir m_out;
    std::unique_ptr<ModalAnswerer> m_answers;
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
    m_answers = std::make_unique<ModalAnswerer>();
}

void SubjectsTest::cleanup()
{
    m_page.reset();
    m_model.reset();
}

QString SubjectsTest::startWithIvanov(bool twoSessions)
{
    const QString folder = m_data.addSubject(QStringLiteral("Ivanov"), Guid);
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
    type(editor, "LastName", QStringLiteral("Petrova"));
    const QString guid = editor->user()->getGUID();
    press(editor, QStringLiteral("Создать"));
    const QString folder =
        m_data.records() + QStringLiteral("Petrova (") + guid + QStringLiteral(")/");
    QVERIFY(TestFiles::read(folder + QStringLiteral("User.xml")).contains("<LastName>Petrova<"));
    QCOMPARE(model.currentUser()->getGUID(), guid);
    QCOMPARE(combo->currentText(), QStringLiteral("Petrova"));

    combo->setCurrentIndex(0);
    QVERIFY(!model.currentUser());
    QVERIFY(m_answers->messages.isEmpty());
}

void SubjectsTest::editingASubject()
{
    QFETCH(QString, field);
    QFETCH(bool, targetTaken);
    QFETCH(QString, value);
    QFETCH(QStringList, folders);
    QFETCH(QStringList, messages);
    startWithIvanov();
    if (targetTaken)
        QVERIFY(QDir().mkpath(m_data.records() + Petrov + QStringLiteral("/taken")));
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    type(editor, field.toLatin1().constData(), value);
    press(editor, QStringLiteral("Изменить"));
    QCOMPARE(m_answers->messages, messages);
    QCOMPARE(entries(m_data.records()), folders);
    const QString folder = m_data.records() + folders.constFirst() + QLatin1Char('/');
    QVERIFY(TestFiles::read(folder + QStringLiteral("User.xml")).contains(value.toUtf8()));
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList {FirstSession});
    QCOMPARE(m_model->users().size(), 1);
    QCOMPARE(m_page->userList()->currentItem()->text(), m_model->currentUser()->fullName(false));
    QCOMPARE(m_page->sessionList()->count(), 1);
}

void SubjectsTest::removedSubjectGoesToTheTrash()
{
    startWithIvanov();
    UserEditor *editor = editIvanov();
    QVERIFY(editor);
    press(editor, QStringLiteral("Удалить"));
    QCOMPARE(m_answers->messages,
             (QStringList {"Удаление", "Удалить этого респондента со всеми сессиями?"}));
    QCOMPARE(entries(m_data.records()), QStringList());
    QVERIFY(QFile::exists(trashed(Ivanov + QLatin1Char('/') + FirstSession)));
    QVERIFY(!m_model->currentUser());
    QCOMPARE(m_page->userList()->count(), 0);
}

void SubjectsTest::looseSessionsShowUnderThePseudoSubject()
{
    startWithIvanov();
    QCOMPARE(m_page->userList()->count(), 1);
    QVERIFY(m_page->sessionList()->isVisibleTo(m_page.get()));
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

// A stored session opens with its Export button and exports; a file deleted from outside keeps
// its row, and picking it changes nothing; the menu sends the session on show to the trash.
void SubjectsTest::storedSessionsAreShownExportedAndTrashed()
{
    const QString folder = startWithIvanov(true);
    m_model->settings()->setExportBehavior(TarveloSettings::OnExport_DoNothing);
    m_page->sessionList()->setCurrentRow(0);
    TarveloSessionWidget *view = m_page->sessionView();
    const TarveloSession *shown = view->session();
    QVERIFY(shown && shown->loaded());
    // A view without a model never offers the box; a stored session is not "finished" again.
    QVERIFY(!view->exportButton()->isHidden() && view->recordCheckBox()->isHidden());
    QVERIFY(view->titleLabel()->text().contains(QStringLiteral("Проба")));
    QVERIFY(!view->reportHtml().contains(QStringLiteral("Завершено")));
    m_answers->saveAs = m_out.filePath(QStringLiteral("stored.csv"));
    m_answers->saveFilter = QStringLiteral("CSV (*.csv)");
    view->exportButton()->click();
    QVERIFY(TestFiles::read(m_answers->saveAs).contains("2024-03-05 14.20\r\n№;Этап;"));

    QVERIFY(QFile::remove(folder + SecondSession));
    m_page->sessionList()->setCurrentRow(1);
    QCOMPARE(view->session(), shown);
    QCOMPARE(m_page->sessionList()->count(), 2);

    emit m_page->sessionList()->customContextMenuRequested(QPoint(4, 4));
    QCOMPARE(m_answers->messages,
             (QStringList {"Удаление сессии", "Действительно удалить результаты этой сессии?"}));
    QVERIFY(QFile::exists(trashed(FirstSession)));
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList());
    QCOMPARE(m_page->sessionList()->count(), 0);
    QVERIFY(!view->session() && view->reportHtml().isEmpty() && view->titleLabel()->isHidden());
}

QTEST_MAIN(SubjectsTest)
#include "tst_subjects.moc"
