#include "ScriptCreatorWidget.h"

#include "app/TarveloModel.h"
#include "data/ScriptStage.h"
#include "data/TarveloCommon.h"
#include "data/TarveloScript.h"
#include "data/TarveloSettings.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/UIHelper.h"
#include "foundation/widgets/WidgetBuilders.h"
#include "frame/StimulusWidgets.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

namespace {
enum Column { Steps, Duration, DurationJitter, Delay, DelayJitter, ColumnCount };

struct ColumnLook
{
    QString header;
    QString toolTip;
    int minimum;
    int maximum;
    int value;
    int step;
    Qt::Alignment alignment;
    int width;
};

QList<ColumnLook> columnLooks()
{
    const QString ms = QCoreApplication::translate("Generic", "ms");
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    return {
        {ScriptCreatorWidget::tr("Шаги"), ScriptCreatorWidget::tr("Количество шагов в этапе"), 1,
         30, 30, 1, Qt::Alignment(), 50},
        {QStringLiteral("T, ") + ms, ScriptCreatorWidget::tr("Длительность стимула, мс"), 100,
         20000, 2000, 50, right, 60},
        {QStringLiteral("ΔT, ") + ms,
         ScriptCreatorWidget::tr(
             "Случайное приращение к длительности (мс), не более указанного значения"),
         0, 20000, 0, 50, right, 60},
        {QStringLiteral("t, ") + ms,
         ScriptCreatorWidget::tr("Длительность задержки после стимула (мс)"), 0, 20000, 1000, 50,
         right, 60},
        {QStringLiteral("Δt, ") + ms,
         ScriptCreatorWidget::tr(
             "Случайное приращение к задержке (мс), не более указанного значения"),
         0, 20000, 0, 50, right, 60},
    };
}

QLabel *makeInvalidLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QStringLiteral("labelInvalid"));
    label->setWordWrap(true);
    label->hide();
    return label;
}
} // namespace

ScriptCreatorWidget::ScriptCreatorWidget(TarveloModel *model, bool scriptMode, QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_scriptMode(scriptMode)
    , m_stageCount(scriptMode ? MaxStages : 1)
    , m_model(model)
    , m_layout(new QGridLayout(this))
{
    UIHelper::ChangeBackground(this, Qt::white);
    setMinimumWidth(570);
    setWindowTitle(scriptMode ? tr("Создание сценария") : tr("Создание этапа"));
    for (int value = 0; value < TarveloCommon::StimulusCount; ++value)
        m_stimuli << value;

    if (m_scriptMode) {
        m_nameEdit = new QLineEdit;
        m_labelEmptyName = makeInvalidLabel(TarveloModel::emptyTitleText());
        m_labelUsedName = makeInvalidLabel(TarveloModel::usedTitleText());
        m_layout->addWidget(makeHeaderLabel(tr("Название")), 0, 0);
        m_layout->addWidget(m_nameEdit, 0, 1, 1, 3);
        // Spans the row: a refused title's reason is longer than the used-name text.
        m_layout->addWidget(m_labelEmptyName, 1, 1, 1, 3);
        m_layout->addWidget(m_labelUsedName, 1, 1, 1, 3);
        connect(m_nameEdit, &QLineEdit::textChanged, this, &ScriptCreatorWidget::checkName);

        m_stageCountSpin = new QSpinBox;
        m_stageCountSpin->setRange(1, MaxStages);
        m_stageCountSpin->setValue(MaxStages);
        m_stageCountSpin->setSingleStep(1);
        m_stageCountSpin->setAlignment(Qt::AlignRight);
        m_layout->addWidget(m_stageCountSpin, 2, 3, Qt::AlignLeft);
        connect(m_stageCountSpin, qOverload<int>(&QSpinBox::valueChanged), this, [this](int count) {
            m_stageCount = count;
            buildTable();
        });
    }
    m_layout->addWidget(new QLabel(tr("Стимулы")), 2, 0, 1, 2, Qt::AlignBottom);
    m_layout->addWidget(new QLabel(tr("Этапы")), 2, 2);
    m_layout->addWidget(buildStimuli(), 3, 0, 1, 2);

    m_createButton =
        makeIconButton(MediaHelper::icon(QStringLiteral(":/resources/Images/done.svg")),
                       tr("Создать"), QString(), QStringLiteral("positive"), QSize(24, 24));
    auto *cancelButton =
        makeIconButton(MediaHelper::icon(QStringLiteral(":/resources/Images/close.svg")),
                       tr("Отмена"), QString(), QStringLiteral("negative"), QSize(24, 24));
    m_labelLoop = makeInvalidLabel(tr("Для двух и более шагов в этапе нужны хотя бы два стимула"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_labelLoop);
    buttons->addStretch();
    buttons->addWidget(m_createButton);
    buttons->addWidget(cancelButton);
    m_layout->addLayout(buttons, 4, 0, 1, 4);
    m_layout->setColumnStretch(3, 100);
    m_layout->setColumnStretch(1, 1);
    m_layout->setRowStretch(3, 100);

    connect(m_createButton, &QPushButton::clicked, this, [this] {
        if (m_scriptMode)
            emit acceptScript();
        else
            emit acceptStage();
        close();
    });
    connect(cancelButton, &QPushButton::clicked, this, [this] {
        emit cancel();
        close();
    });

    buildTable();
}

QWidget *ScriptCreatorWidget::buildStimuli()
{
    auto *box = new QWidget;
    auto *grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    for (int value = 0; value < TarveloCommon::StimulusCount; ++value) {
        auto *check = new QCheckBox;
        check->setChecked(true);
        connect(check, &QCheckBox::toggled, this,
                [this, value](bool on) { setStimulusAllowed(value, on); });
        grid->addWidget(check, value, 0);
        grid->addWidget(stimulusButton(value), value, 1);
    }
    grid->setColumnStretch(1, 100);
    return box;
}

void ScriptCreatorWidget::buildTable()
{
    // A new count starts a new table: what was typed into the old one is gone.
    if (m_table) {
        m_table->setParent(nullptr);
        m_table->deleteLater();
    }
    m_table = new QTableWidget(m_stageCount, ColumnCount);
    const QList<ColumnLook> looks = columnLooks();
    for (int column = 0; column < ColumnCount; ++column) {
        auto *header = new QTableWidgetItem(looks.at(column).header);
        header->setToolTip(looks.at(column).toolTip);
        m_table->setHorizontalHeaderItem(column, header);
        m_table->setColumnWidth(column, looks.at(column).width);
    }
    // Numbered from the top down to 1, as the script editor numbers the stages.
    QStringList numbers;
    for (int row = 0; row < m_stageCount; ++row)
        numbers << QString::number(m_stageCount - row);
    m_table->setVerticalHeaderLabels(numbers);
    for (int row = 0; row < m_stageCount; ++row) {
        for (int column = 0; column < ColumnCount; ++column) {
            const ColumnLook &look = looks.at(column);
            auto *spin = new QSpinBox;
            spin->setObjectName(QStringLiteral("borderless"));
            spin->setRange(look.minimum, look.maximum);
            spin->setValue(look.value);
            spin->setSingleStep(look.step);
            if (look.alignment)
                spin->setAlignment(look.alignment);
            m_table->setCellWidget(row, column, spin);
            if (column == Steps)
                connect(spin, qOverload<int>(&QSpinBox::valueChanged), this,
                        &ScriptCreatorWidget::updateCreate);
        }
    }
    m_layout->addWidget(m_table, 3, 2, 1, 2);
    updateCreate();
}

QSpinBox *ScriptCreatorWidget::cell(int row, int column) const
{
    return qobject_cast<QSpinBox *>(m_table->cellWidget(row, column));
}

void ScriptCreatorWidget::checkName(const QString &text)
{
    m_scriptName = text.trimmed();
    const QString problem = m_model->titleProblem(m_scriptName, QString());
    m_nameValid = problem.isEmpty();
    m_labelEmptyName->setVisible(m_scriptName.isEmpty());
    m_labelUsedName->setText(problem);
    m_labelUsedName->setVisible(!m_scriptName.isEmpty() && !m_nameValid);
    updateCreate();
}

void ScriptCreatorWidget::setStimulusAllowed(int stimulus, bool allowed)
{
    if (!allowed)
        m_stimuli.removeAll(stimulus);
    else if (!m_stimuli.contains(stimulus))
        m_stimuli << stimulus;
    updateCreate();
}

bool ScriptCreatorWidget::drawCanEnd() const
{
    if (m_stimuli.size() >= 2)
        return true;
    for (int row = 0; row < m_stageCount; ++row) {
        if (cell(row, Steps)->value() >= 2)
            return false;
    }
    return true;
}

void ScriptCreatorWidget::updateCreate()
{
    const bool canEnd = drawCanEnd();
    m_labelLoop->setVisible(!canEnd);
    m_createButton->setEnabled(canEnd && (!m_scriptMode || m_nameValid));
}

TarveloScript *ScriptCreatorWidget::createScript()
{
    auto *script = new TarveloScript;
    script->setTitle(m_scriptName);
    m_model->settings()->applyScriptDefaults(*script);
    // The top row, numbered highest, becomes the first stage.
    for (int row = 0; row < m_stageCount; ++row)
        script->addStage(createStage(row));
    return script;
}

ScriptStage *ScriptCreatorWidget::createStage(int row)
{
    if (m_stimuli.isEmpty())
        m_stimuli << TarveloCommon::LED_TOP_Green;
    ScriptStage *stage =
        ScriptStage::generate(cell(row, Steps)->value(), m_stimuli, cell(row, Duration)->value(),
                              cell(row, Delay)->value(), cell(row, DurationJitter)->value(),
                              cell(row, DelayJitter)->value());
    m_model->settings()->applyStageDefaults(*stage);
    return stage;
}
