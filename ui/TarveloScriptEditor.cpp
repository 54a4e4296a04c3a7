#include "TarveloScriptEditor.h"

#include "ScriptCreatorWidget.h"
#include "TarveloStageEditor.h"
#include "app/TarveloModel.h"
#include "data/ScriptStage.h"
#include "data/StageTransfer.h"
#include "data/TarveloScript.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {
constexpr int DefaultTone = 1000;
constexpr int MaxTransferItem = 30;

// Labels of the transfer keys, in the order of StageTransfer::keys().
const char *const TransferLabels[] = {
    QT_TRANSLATE_NOOP("Generic", "Остановить"),     QT_TRANSLATE_NOOP("Generic", "-2 этапа"),
    QT_TRANSLATE_NOOP("Generic", "-1 этап"),        QT_TRANSLATE_NOOP("Generic", "Повтор этапа"),
    QT_TRANSLATE_NOOP("Generic", "+1 этап"),        QT_TRANSLATE_NOOP("Generic", "+2 этапа"),
    QT_TRANSLATE_NOOP("Generic", "Макс. повторов"),
};

const QString RepeatsKey = QStringLiteral("rpt");

const char *const StageButtonStyle =
    "QPushButton { font-weight: bold; border: 1px solid #BBB; background: #F6F6F6; color: #000; "
    "padding: 4px; border-radius: 2px; }  QPushButton::checked { border: 1px solid #BBB; "
    "background: #159; color: #FFF; } QPushButton::hover { border: 1px solid #0CF; }";

QLineEdit *makeLineEdit()
{
    auto *edit = new QLineEdit;
    edit->setObjectName(QStringLiteral("editable"));
    return edit;
}

QSpinBox *makeToneSpin()
{
    auto *spin = new QSpinBox;
    spin->setRange(10, 2000);
    spin->setSingleStep(1);
    spin->setObjectName(QStringLiteral("editable"));
    // Wide enough for "2000 Hz" beside the arrows.
    spin->setMinimumWidth(96);
    spin->setSuffix(QLatin1Char(' ') + QCoreApplication::translate("Generic", "Hz"));
    return spin;
}
} // namespace

TarveloScriptEditor::TarveloScriptEditor(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_layout(new QGridLayout(this))
    , m_stageRow(new QHBoxLayout)
    , m_titleEdit(makeLineEdit())
    , m_descriptionEdit(makeLineEdit())
    , m_messageEdit(makeLineEdit())
    , m_toneLoSpin(makeToneSpin())
    , m_toneHiSpin(makeToneSpin())
    , m_fullTimeCheck(new QCheckBox(tr("Полное время шагов")))
    , m_stageEditor(new TarveloStageEditor)
{
    m_layout->setSpacing(8);
    m_layout->setContentsMargins(0, 0, 0, 0);

    // The title's cell carries the reason why a typed title can't be saved.
    m_titleProblemLabel = new QLabel;
    m_titleProblemLabel->setObjectName(QStringLiteral("labelInvalid"));
    m_titleProblemLabel->setWordWrap(true);
    m_titleProblemLabel->hide();
    auto *titleBox = new QVBoxLayout;
    titleBox->setContentsMargins(0, 0, 0, 0);
    titleBox->addWidget(m_titleEdit);
    titleBox->addWidget(m_titleProblemLabel);
    connect(m_titleEdit, &QLineEdit::textChanged, this, &TarveloScriptEditor::checkTitle);

    m_fullTimeCheck->setToolTip(
        tr("Если активировано, то стимул не прекращается после нажатия кнопки/педали"));
    m_fullTimeCheck->setLayoutDirection(Qt::RightToLeft);
    m_fullTimeCheck->setObjectName(QStringLiteral("propertyHeaderLabel"));

    m_layout->addWidget(makeHeaderLabel(tr("Название")), 0, 0);
    m_layout->addLayout(titleBox, 0, 1);
    m_layout->addWidget(makeHeaderLabel(tr("Низкий тон")), 0, 2);
    m_layout->addWidget(m_toneLoSpin, 0, 3, Qt::AlignLeft);
    m_layout->addWidget(makeHeaderLabel(tr("Описание")), 1, 0);
    m_layout->addWidget(m_descriptionEdit, 1, 1);
    m_layout->addWidget(makeHeaderLabel(tr("Высокий тон")), 1, 2);
    m_layout->addWidget(m_toneHiSpin, 1, 3, Qt::AlignLeft);
    m_layout->addWidget(makeHeaderLabel(tr("Сообщение")), 2, 0);
    m_layout->addWidget(m_messageEdit, 2, 1);
    m_layout->addWidget(m_fullTimeCheck, 2, 2, 1, 2, Qt::AlignRight);
    m_layout->addWidget(makeHeaderLabel(tr("Этапы")), 3, 0);
    m_layout->addLayout(m_stageRow, 3, 1, 1, 2, Qt::AlignLeft);
    m_layout->addWidget(m_stageEditor, 4, 1);
    m_layout->addWidget(buildTransfers(), 4, 2, 1, 2);
    // The step table takes the height that is left.
    m_layout->setRowStretch(4, 100);

    const QIcon addIcon = MediaHelper::icon(QStringLiteral(":/resources/Images/add.svg"));
    const QIcon deleteIcon = MediaHelper::icon(QStringLiteral(":/resources/Images/delete.svg"));
    m_addStageButton =
        makeIconButton(addIcon, QString(), tr("Добавить этап"), QString(), QSize(24, 24));
    m_removeStageButton =
        makeIconButton(deleteIcon, QString(), tr("Удалить этап"), QString(), QSize(24, 24));
    connect(m_addStageButton, &QPushButton::clicked, this, &TarveloScriptEditor::addStage);
    connect(m_removeStageButton, &QPushButton::clicked, this, &TarveloScriptEditor::removeStage);

    rebuild();
}

QWidget *TarveloScriptEditor::buildTransfers()
{
    auto *box = new QWidget;
    auto *grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(makeHeaderLabel(tr("Переходы")), 0, 0, 1, 2, Qt::AlignRight);
    const QString toolTip =
        tr("Количество ошибок для активации перехода в конце этапа, пусто - действие не "
           "применяется");
    QStringList items;
    for (int i = 0; i <= MaxTransferItem; ++i)
        items << QString::number(i);

    const QStringList &keys = StageTransfer::keys();
    for (int i = 0; i < keys.size(); ++i) {
        const QString &key = keys.at(i);
        auto *label = new QLabel(QCoreApplication::translate("Generic", TransferLabels[i]));
        auto *combo = makeUniformComboBox();
        // Typing allows clearing a transfer, or a count beyond the list; repeats are picked.
        combo->setEditable(key != RepeatsKey);
        combo->setPlaceholderText(QStringLiteral("?"));
        combo->addItems(items);
        combo->setMinimumHeight(32);
        combo->setObjectName(QStringLiteral("editable"));
        if (key != RepeatsKey) {
            combo->setToolTip(toolTip);
            label->setToolTip(toolTip);
        }
        grid->addWidget(label, i + 1, 0, Qt::AlignRight);
        grid->addWidget(combo, i + 1, 1);
        m_transferCombos.insert(key, combo);
    }
    grid->setRowStretch(keys.size() + 1, 100);
    return box;
}

void TarveloScriptEditor::setScript(TarveloScript *script)
{
    closeStageCreator();
    m_script = script;
    m_currentStage = nullptr;
    rebuild();
}

void TarveloScriptEditor::rebuild()
{
    // Filled first and connected after, so that filling writes nothing back.
    m_scriptConnections.clear();
    TarveloScript *script = m_script;
    m_titleEdit->setText(script ? script->title() : QString());
    m_descriptionEdit->setText(script ? script->description() : QString());
    m_messageEdit->setText(script ? script->message() : QString());
    m_fullTimeCheck->setChecked(script && script->fullDuration());
    m_toneHiSpin->setValue(script ? script->toneHi() : DefaultTone);
    m_toneLoSpin->setValue(script ? script->toneLo() : DefaultTone);
    if (script) {
        m_scriptConnections
            << connect(m_titleEdit, &QLineEdit::textChanged, script, &TarveloScript::setTitle)
            << connect(m_descriptionEdit, &QLineEdit::textChanged, script,
                       &TarveloScript::setDescription)
            << connect(m_messageEdit, &QLineEdit::textChanged, script, &TarveloScript::setMessage)
            << connect(m_fullTimeCheck, &QCheckBox::toggled, script,
                       &TarveloScript::setFullDuration)
            << connect(m_toneHiSpin, qOverload<int>(&QSpinBox::valueChanged), script,
                       [script](int hz) { script->setToneHi(quint16(hz)); })
            << connect(m_toneLoSpin, qOverload<int>(&QSpinBox::valueChanged), script,
                       [script](int hz) { script->setToneLo(quint16(hz)); });
    }

    rebuildStageButtons();
    const int count = script ? script->stages().size() : 0;
    m_currentStage = count > 0 ? script->stages().constFirst() : nullptr;
    if (!m_stageButtons.isEmpty())
        m_stageButtons.constFirst()->setChecked(true);
    m_stageRow->addWidget(m_addStageButton);
    m_stageRow->addWidget(m_removeStageButton);
    fillStage();
    m_addStageButton->setEnabled(script && count < ScriptCreatorWidget::MaxStages);
    m_removeStageButton->setEnabled(m_currentStage && count > 1);
}

void TarveloScriptEditor::rebuildStageButtons()
{
    for (QPushButton *button : qAsConst(m_stageButtons)) {
        button->hide();
        button->setParent(nullptr);
        button->deleteLater();
    }
    m_stageButtons.clear();
    const int count = m_script ? m_script->stages().size() : 0;
    // The first stage bears the highest number and the last one 1, as confirmations say.
    for (int i = 0; i < count; ++i) {
        const QString number = QString::number(count - i);
        auto *button = new QPushButton(number);
        button->setCheckable(true);
        button->setFlat(true);
        button->setFixedSize(28, 28);
        button->setCursor(Qt::PointingHandCursor);
        button->setToolTip(tr("Перейти к этапу ") + number);
        button->setStyleSheet(QLatin1String(StageButtonStyle));
        m_stageRow->addWidget(button, 0, Qt::AlignLeft);
        connect(button, &QPushButton::clicked, this, [this, i] { selectStage(i); });
        m_stageButtons << button;
    }
}

void TarveloScriptEditor::fillStage()
{
    m_stageConnections.clear();
    m_editableWidgets = {m_titleEdit, m_descriptionEdit, m_messageEdit};
    ScriptStage *stage = m_script ? m_currentStage : nullptr;
    for (auto it = m_transferCombos.cbegin(); it != m_transferCombos.cend(); ++it) {
        QComboBox *combo = it.value();
        {
            const QSignalBlocker blocker(combo);
            // Without a stage the combos show nothing, not the last stage's values.
            if (stage)
                combo->setCurrentText(stage->value(it.key()));
            else
                combo->setCurrentIndex(-1);
        }
        if (stage) {
            const QString key = it.key();
            m_stageConnections << connect(
                combo, &QComboBox::currentTextChanged, this,
                [stage, key](const QString &text) { stage->setValue(key, text); });
        }
    }
    m_stageEditor->setStage(stage);
    setEditing(m_editing);
}

void TarveloScriptEditor::selectStage(int index)
{
    const int count = m_script ? m_script->stages().size() : 0;
    const bool valid = index >= 0 && index < count;
    m_currentStage = valid ? m_script->stages().at(index) : nullptr;
    for (int i = 0; i < m_stageButtons.size(); ++i)
        m_stageButtons.at(i)->setChecked(valid && i == index);
    fillStage();
}

void TarveloScriptEditor::setEditing(bool editing)
{
    m_editing = editing;
    for (QWidget *widget : qAsConst(m_editableWidgets))
        widget->setEnabled(editing);
    m_fullTimeCheck->setEnabled(editing);
    m_toneLoSpin->setEnabled(editing);
    m_toneHiSpin->setEnabled(editing);
    for (QComboBox *combo : qAsConst(m_transferCombos))
        combo->setEnabled(editing);
    m_addStageButton->setVisible(editing);
    m_removeStageButton->setVisible(editing);
    m_stageEditor->setEditing(editing);
    m_titleProblemLabel->setVisible(editing && !m_titleProblem.isEmpty());
    // A stage made for an edit that has ended has no script to go to.
    if (!editing)
        closeStageCreator();
}

void TarveloScriptEditor::checkTitle()
{
    m_titleProblem = m_script && m_model
        ? m_model->titleProblem(m_titleEdit->text(), m_model->currentScriptTitle())
        : QString();
    m_titleProblemLabel->setText(m_titleProblem);
    m_titleProblemLabel->setVisible(m_editing && !m_titleProblem.isEmpty());
    emit titleChecked(m_titleProblem);
}

void TarveloScriptEditor::addStage()
{
    if (!m_script)
        return;
    if (m_stageCreator) {
        m_stageCreator->raise();
        m_stageCreator->activateWindow();
        return;
    }
    m_stageCreator = new ScriptCreatorWidget(m_model, false, this);
    m_stageCreator->setAttribute(Qt::WA_DeleteOnClose);
    TarveloScript *target = m_script;
    connect(m_stageCreator, &ScriptCreatorWidget::acceptStage, this, [this, target] {
        if (!m_editing || m_script != target || !m_stageCreator)
            return;
        m_script->addStage(m_stageCreator->createStage(0));
        rebuild();
        selectStage(m_script->stages().size() - 1);
    });
    m_stageCreator->show();
}

void TarveloScriptEditor::removeStage()
{
    if (!m_script || !m_currentStage)
        return;
    const int index = m_script->stages().indexOf(m_currentStage);
    if (index < 0)
        return;
    const int number = m_script->stages().size() - index;
    if (!AppHelper::confirmDialog(tr("Удаление этапа"),
                                  tr("Удалить этап") + QLatin1Char(' ') + QString::number(number)
                                      + QLatin1Char('?'),
                                  QMessageBox::Information))
        return;
    ScriptStage *stage = m_currentStage;
    m_script->removeStage(index);
    rebuild();
    selectStage(0);
    delete stage;
}

void TarveloScriptEditor::closeStageCreator()
{
    if (m_stageCreator)
        m_stageCreator->close();
}
