#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "device/TarveloDevice.h"
#include "session/widgets/PlayScriptStopSessionButton.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"
#include "ui/MainWindow.h"
#include "ui/PageScript.h"
#include "ui/ScriptCreatorWidget.h"
#include "ui/TarveloScriptEditor.h"
#include "ui/TarveloStageEditor.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

namespace {
constexpr int WinMs = 8000;

const QStringList TrialStages {
    QStringLiteral("stop=5;s-2=;s-1=;s-0=2;s+1=1;s+2=;rpt=3;[s=1,t=1500,d=1000][s=2,t=1500,d=900]"),
    QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=1;[s=3,t=1000,d=800]"),
};

// Files in the scripts folder, with their bytes, as an independent reader sees them.
QMap<QString, QByteArray> scriptFiles(const QString &folder)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        files.insert(name, TestFiles::read(folder + name));
    return files;
}

// Files written from here on fail beyond this size, as on a full disk; lifted when it goes.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // a failed write, not the end of the process
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit {bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    rlimit m_old {};
};

struct ShownBox
{
    QString title;
    QString text;
};
} // namespace

class ScriptPageTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void titleIsCheckedWhereItIsTyped_data();
    void titleIsCheckedWhereItIsTyped();
    void failedWriteKeepsTheOldFileAndTheEdits();
    void cancelDropsTheEdits();
    void deleteAsksFirst_data();
    void deleteAsksFirst();
    void createdScriptIsFiledAndSelected();
    void playIsHeldBackWhileEditingAndWithoutSteps();
    void leavingWithUnsavedEditsAsks_data();
    void leavingWithUnsavedEditsAsks();

private:
    TestDataFolder m_data;
    QTimer m_boxWatch;
    // The button that the next message box gets; a box without it is closed.
    QString m_answer;
    QList<ShownBox> m_boxes;
};

void ScriptPageTest::initTestCase()
{
    QVERIFY(m_data.isValid());
    m_boxWatch.setInterval(10);
    connect(&m_boxWatch, &QTimer::timeout, this, [this] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        m_boxes.append({box->windowTitle(), box->text()});
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == m_answer) {
                button->click();
                return;
            }
        }
        box->done(-1);
    });
    m_boxWatch.start();
}

void ScriptPageTest::init()
{
    m_data.clear();
    setExtraPorts({});
    m_answer.clear();
    m_boxes.clear();
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), TrialStages));
    QVERIFY(m_data.writeScript(QStringLiteral("Другой"), TrialStages));
}

void ScriptPageTest::titleIsCheckedWhereItIsTyped_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("savedAs"); // empty when the title is refused

    for (const char *refused : {"a/b", "a\\b", "a;b", "a=b", "a:b", "a*b", "a?b", "a|b", "a\"b",
                                "<a>", "a..b", ".hidden", "dot.", "con", "Lpt1.x", "   ", "другой"})
        QTest::newRow(refused) << QString::fromUtf8(refused) << QString();
    QTest::newRow("line break") << "line\nbreak" << QString();
    QTest::newRow("tab") << "tab\there" << QString();
    QTest::newRow("201 bytes") << QString(100, QChar(0x44F)) + QLatin1Char('a') << QString();
    QTest::newRow("200 bytes") << QString(100, QChar(0x44F)) << QString(100, QChar(0x44F));
    QTest::newRow("blanks around") << " Проба 2 "
                                   << "Проба 2";
    QTest::newRow("own title in capitals") << "ПРОБА"
                                           << "ПРОБА";
    QTest::newRow("a point inside") << "v1.2"
                                    << "v1.2";
}

void ScriptPageTest::titleIsCheckedWhereItIsTyped()
{
    QFETCH(QString, title);
    QFETCH(QString, savedAs);

    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    page.editButton()->click();
    page.editor()->titleEdit()->setText(title);
    QLabel *label = page.editor()->titleProblemLabel();

    if (savedAs.isEmpty()) {
        QVERIFY(!page.saveButton()->isEnabled());
        QVERIFY(!label->isHidden());
        QVERIFY(!label->text().isEmpty());
        QCOMPARE(page.saveButton()->toolTip(), label->text());
        QVERIFY(!model.commitScript(true));
        QCOMPARE(scriptFiles(m_data.scripts()), before);
        QVERIFY(page.isEditing());
        return;
    }
    QVERIFY(label->isHidden());
    page.saveButton()->click();
    QVERIFY(!page.isEditing());
    QStringList expected {QStringLiteral("Другой.script"), savedAs + QStringLiteral(".script")};
    expected.sort();
    QCOMPARE(scriptFiles(m_data.scripts()).keys(), expected);
    QCOMPARE(model.currentScriptTitle(), savedAs);
    QCOMPARE(model.currentScript()->title(), savedAs);
    QCOMPARE(page.scriptCombo()->currentText(), savedAs);
}

void ScriptPageTest::failedWriteKeepsTheOldFileAndTheEdits()
{
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    page.editButton()->click();
    page.editor()->titleEdit()->setText(QStringLiteral("Новое"));
    {
        const FileSizeLimit fullDisk(16);
        page.saveButton()->click();
    }
    QCOMPARE(m_boxes.size(), 1);
    QVERIFY(m_boxes.at(0).text.contains(m_data.scripts().chopped(1)));
    QCOMPARE(scriptFiles(m_data.scripts()), before);
    QVERIFY(page.isEditing());
    QCOMPARE(model.currentScript()->title(), QStringLiteral("Новое"));

    page.saveButton()->click();
    QVERIFY(!page.isEditing());
    QCOMPARE(scriptFiles(m_data.scripts()).keys(),
             (QStringList {QStringLiteral("Другой.script"), QStringLiteral("Новое.script")}));
}

void ScriptPageTest::cancelDropsTheEdits()
{
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    TarveloScript *edited = model.currentScript();
    TarveloScriptEditor *editor = page.editor();
    page.editButton()->click();
    editor->descriptionEdit()->setText(QStringLiteral("Другое описание"));
    editor->toneHiSpin()->setValue(1500);
    editor->transferCombo(QStringLiteral("stop"))->setEditText(QStringLiteral("07"));
    editor->stageEditor()->delaySpin(1)->setValue(50);
    QVERIFY(page.hasUnsavedChanges());
    QCOMPARE(edited->toText().section(QStringLiteral("\r\n"), 1, 1),
             QStringLiteral("stop=7;s-2=;s-1=;s-0=2;s+1=1;s+2=;rpt=3;[s=1,b=2,t=1500,d=1000]"
                            "[s=2,b=4,t=1500,d=50]"));

    page.cancelButton()->click();
    QVERIFY(!page.isEditing());
    QCOMPARE(scriptFiles(m_data.scripts()), before);
    QVERIFY(model.currentScript() != edited);
    QCOMPARE(model.currentScript()->description(), QString());
    QCOMPARE(editor->descriptionEdit()->text(), QString());
    QCOMPARE(editor->toneHiSpin()->value(), 1000);
    QCOMPARE(editor->transferCombo(QStringLiteral("stop"))->currentText(), QStringLiteral("5"));
    QVERIFY(!editor->descriptionEdit()->isEnabled());
    QVERIFY(!page.editButton()->isHidden());
    delete edited;
}

void ScriptPageTest::deleteAsksFirst_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("no") << "No" << QStringList {"Другой.script", "Проба.script"};
    QTest::newRow("yes") << "Yes" << QStringList {"Другой.script"};
}

void ScriptPageTest::deleteAsksFirst()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, left);

    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    m_answer = answer;
    page.deleteButton()->click();
    QCOMPARE(m_boxes.size(), 1);
    QCOMPARE(m_boxes.at(0).title, QStringLiteral("Удаление сценария"));
    QCOMPARE(m_boxes.at(0).text, QStringLiteral("Удалить сценарий \"Проба\"?"));
    QCOMPARE(scriptFiles(m_data.scripts()).keys(), left);
    QCOMPARE(model.currentScriptTitle(), QString(left.size() == 2 ? "Проба" : "Другой"));
    QCOMPARE(page.editor()->titleEdit()->text(), model.currentScript()->title());
}

void ScriptPageTest::createdScriptIsFiledAndSelected()
{
    TarveloModel model;
    PageScript page(&model);
    page.createButton()->click();
    auto *creator = page.findChild<ScriptCreatorWidget *>();
    QVERIFY(creator);
    QVERIFY(creator->isVisible());
    creator->nameEdit()->setText(QStringLiteral("Новый"));
    creator->stageCountSpin()->setValue(2);
    creator->createButton()->click();

    QVERIFY(QFile::exists(m_data.scripts() + QStringLiteral("Новый.script")));
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("Новый"));
    QCOMPARE(model.currentScript()->stages().size(), 2);
    QCOMPARE(page.editor()->stageButtons().size(), 2);
    QVERIFY(!page.isEditing());
    QTRY_VERIFY(!page.findChild<ScriptCreatorWidget *>());
}

void ScriptPageTest::playIsHeldBackWhileEditingAndWithoutSteps()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Без шагов"), {QStringLiteral("rpt=1;")}));
    QVERIFY(TestFiles::write(m_data.scripts() + QStringLiteral("Пустой.script"), "not a script"));
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    QPushButton *play = page.playButton()->playButton();
    QTRY_VERIFY_WITH_TIMEOUT(model.device()->isConnected(), WinMs);
    QVERIFY(play->isEnabled());

    page.editButton()->click();
    QVERIFY(!play->isEnabled());
    QCOMPARE(play->toolTip(),
             QStringLiteral("Сценарий редактируется: сохраните или отмените изменения"));
    page.cancelButton()->click();
    QVERIFY(play->isEnabled());

    for (const QString &title : {QStringLiteral("Без шагов"), QStringLiteral("Пустой")}) {
        model.selectScript(title);
        QVERIFY(model.currentScript());
        QVERIFY2(!play->isEnabled(), qPrintable(title));
        QCOMPARE(play->toolTip(), QStringLiteral("В сценарии нет ни одного шага"));
    }
}

void ScriptPageTest::leavingWithUnsavedEditsAsks_data()
{
    QTest::addColumn<bool>("change");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("storedDescription");
    QTest::addColumn<bool>("stays");

    QTest::newRow("no change") << false << QString() << QString() << false;
    QTest::newRow("save") << true << "Сохранить"
                          << "Новое" << false;
    QTest::newRow("don't save") << true << "Не сохранять" << QString() << false;
    QTest::newRow("stay") << true << "Отмена" << QString() << true;
}

void ScriptPageTest::leavingWithUnsavedEditsAsks()
{
    QFETCH(bool, change);
    QFETCH(QString, answer);
    QFETCH(QString, storedDescription);
    QFETCH(bool, stays);

    MainWindow window;
    window.show();
    window.model()->selectScript(QStringLiteral("Проба"));
    auto *page = qobject_cast<PageScript *>(window.tabs()->widget(MainWindow::ScriptPage));
    page->editButton()->click();
    if (change)
        page->editor()->descriptionEdit()->setText(QStringLiteral("Новое"));
    m_answer = answer;
    window.tabs()->setCurrentIndex(MainWindow::DatabasePage);

    QCOMPARE(m_boxes.size(), change ? 1 : 0);
    QCOMPARE(window.tabs()->currentIndex(),
             int(stays ? MainWindow::ScriptPage : MainWindow::DatabasePage));
    QCOMPARE(page->isEditing(), stays);
    TarveloScript stored;
    QVERIFY(stored.load(m_data.scripts() + QStringLiteral("Проба.script")));
    QCOMPARE(stored.description(), storedDescription);
    if (!stays) {
        QCOMPARE(window.model()->currentScript()->description(), storedDescription);
        return;
    }
    // Closing the window asks the same; staying keeps it open.
    QVERIFY(!window.close());
    QCOMPARE(m_boxes.size(), 2);
    QVERIFY(window.isVisible());
    m_answer = QStringLiteral("Не сохранять");
    QVERIFY(window.close());
}

QTEST_MAIN(ScriptPageTest)
#include "tst_scriptpage.moc"
