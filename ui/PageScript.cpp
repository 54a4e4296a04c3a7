#include "PageScript.h"

#include "ScriptCreatorWidget.h"
#include "TarveloScriptEditor.h"
#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"
#include "frame/PlayScriptStopSessionButton.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace {
QPushButton *makeHeaderButton(const char *icon, const QString &text, const QString &toolTip,
                              const QString &objectName)
{
    return makeIconButton(
        MediaHelper::icon(QStringLiteral(":/resources/Images/") + QLatin1String(icon)), text,
        toolTip, objectName, QSize(24, 24));
}
} // namespace

PageScript::PageScript(TarveloModel *model, QWidget *parent)
    : HeaderedWidget(model, parent)
    , m_editor(new TarveloScriptEditor(model))
{
    m_editor->setContentsMargins(8, 8, 8, 8);
    pageLayout()->addWidget(m_editor, 100);

    m_deleteButton = makeHeaderButton("delete.svg", QString(), tr("Удалить сценарий"), QString());
    m_editButton = makeHeaderButton("edit.svg", QString(), tr("Редактировать сценарий"), QString());
    m_createButton = makeHeaderButton("add.svg", QString(), tr("Создать сценарий"), QString());
    m_saveButton = makeHeaderButton("done.svg", tr("Сохранить"), tr("Сохранить изменения"),
                                    QStringLiteral("positive"));
    m_cancelButton = makeHeaderButton("close.svg", tr("Отмена"), tr("Отменить изменения"),
                                      QStringLiteral("negative"));
    for (QPushButton *button :
         {m_deleteButton, m_editButton, m_createButton, m_saveButton, m_cancelButton})
        headerButtons()->addWidget(button);

    connect(m_deleteButton, &QPushButton::clicked, this, &PageScript::deleteScript);
    connect(m_editButton, &QPushButton::clicked, this, [this] { setEditing(true); });
    connect(m_createButton, &QPushButton::clicked, this, &PageScript::openCreator);
    connect(m_saveButton, &QPushButton::clicked, this, &PageScript::save);
    connect(m_cancelButton, &QPushButton::clicked, this, &PageScript::cancel);
    connect(m_editor, &TarveloScriptEditor::titleChecked, this, &PageScript::titleChecked);
    connect(model, &TarveloModel::scriptChanged, this, &PageScript::showScript);

    showScript();
    setEditing(false);
}

void PageScript::showScript()
{
    TarveloScript *script = model()->currentScript();
    m_editor->setScript(script);
    m_editor->setEnabled(script);
    m_deleteButton->setEnabled(script);
    m_editButton->setEnabled(script);
    // The file went away under the edit: there is nothing left to save.
    if (m_editing && !script)
        setEditing(false);
}

void PageScript::setEditing(bool editing)
{
    m_editing = editing;
    const TarveloScript *script = model()->currentScript();
    m_textBeforeEdit = editing && script ? script->toText() : QString();
    m_editor->setEditing(editing);
    m_saveButton->setVisible(editing);
    m_cancelButton->setVisible(editing);
    m_createButton->setVisible(!editing);
    m_deleteButton->setVisible(!editing);
    m_editButton->setVisible(!editing);
    // The session page's header keeps its own picker and play button.
    scriptCombo()->setEnabled(!editing);
    updatePlay();
    if (editing)
        emit onStartEditScript();
    else
        emit onEndEditScript();
}

void PageScript::updatePlay()
{
    // What plays is the object under edit, saved or not: it waits for Save or Cancel.
    playButton()->setLock(m_editing ? tr("Сценарий редактируется: сохраните или отмените изменения")
                                    : QString());
}

bool PageScript::hasUnsavedChanges() const
{
    const TarveloScript *script = model()->currentScript();
    return m_editing && script && script->toText() != m_textBeforeEdit;
}

bool PageScript::leaveEditing()
{
    if (!m_editing)
        return true;
    if (!hasUnsavedChanges()) {
        setEditing(false);
        return true;
    }
    const int answer = AppHelper::choiceDialog(
        tr("Несохранённые изменения"),
        tr("Сохранить изменения в сценарии \"%1\"?").arg(model()->currentScriptTitle()),
        QMessageBox::Question, {tr("Сохранить"), tr("Не сохранять"), tr("Отмена")});
    if (answer == 0)
        return save();
    if (answer == 1) {
        cancel();
        return true;
    }
    return false;
}

void PageScript::titleChecked(const QString &problem)
{
    m_saveButton->setEnabled(problem.isEmpty());
    m_saveButton->setToolTip(problem.isEmpty() ? tr("Сохранить изменения") : problem);
}

void PageScript::deleteScript()
{
    if (!model()->currentScript())
        return;
    const QString text = tr("Удалить сценарий") + QStringLiteral(" \"")
        + model()->currentScriptTitle() + QStringLiteral("\"?");
    if (AppHelper::confirmDialog(tr("Удаление сценария"), text, QMessageBox::Question))
        model()->removeCurrentScript(true);
}

bool PageScript::save()
{
    if (model()->commitScript(true)) {
        setEditing(false);
        return true;
    }
    // Nothing was written and the edits are all still there: the operator can try again.
    showNotWritten(m_editor->titleProblem(), tr("Сохранение сценария"));
    return false;
}

void PageScript::cancel()
{
    model()->commitScript(false);
    setEditing(false);
}

void PageScript::openCreator()
{
    auto *creator = new ScriptCreatorWidget(model(), true, this);
    creator->setAttribute(Qt::WA_DeleteOnClose);
    connect(creator, &ScriptCreatorWidget::acceptScript, this, [this, creator] {
        // A creator opened before Edit was pressed may deliver during the edit.
        if (!leaveEditing())
            return;
        const std::unique_ptr<TarveloScript> script(creator->createScript());
        if (model()->addScript(*script))
            return;
        showNotWritten(model()->titleProblem(script->title(), QString()), tr("Создание сценария"));
    });
    creator->show();
}

void PageScript::showNotWritten(const QString &problem, const QString &title) const
{
    // A file that couldn't be written has been announced with its reason; the window says it.
    if (!problem.isEmpty())
        AppHelper::warningMessage(problem, title, QMessageBox::Warning);
}
