#include "TarveloStageEditor.h"

#include "DeleteUpDownWidget.h"
#include "data/ScriptStage.h"
#include "data/TarveloCommon.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"
#include "frame/StimulusWidgets.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

namespace {
constexpr int MaxTime = 32000;

// A step that the add button appends.
constexpr int NewStepDuration = 2000;
constexpr int NewStepDelay = 1000;

struct StimulusItem
{
    QIcon icon;
    QString text;
};

// The same coloured picture in every mode, so that a read-only table isn't greyed out.
QIcon unfadedIcon(const QIcon &source)
{
    const QPixmap pixmap = source.pixmap(24, 24);
    QIcon icon;
    icon.addPixmap(pixmap, QIcon::Normal, QIcon::Off);
    icon.addPixmap(pixmap, QIcon::Disabled, QIcon::On);
    icon.addPixmap(pixmap, QIcon::Disabled, QIcon::Off);
    return icon;
}

const QList<StimulusItem> &stimulusItems()
{
    static const QList<StimulusItem> items = [] {
        QList<StimulusItem> list;
        for (int value = 0; value < TarveloCommon::StimulusCount; ++value)
            list.append({unfadedIcon(stimulusIcon(value)), stimulusName(value)});
        return list;
    }();
    return items;
}

QSpinBox *makeTimeSpin()
{
    auto *spin = new QSpinBox;
    spin->setRange(0, MaxTime);
    spin->setSingleStep(1);
    // Wide enough for 32000 beside the arrows.
    spin->setMinimumWidth(76);
    spin->setObjectName(QStringLiteral("editable"));
    return spin;
}
} // namespace

TarveloStageEditor::TarveloStageEditor(QWidget *parent)
    : NScrollViewer(Qt::Vertical, parent)
    , m_grid(new QGridLayout)
    , m_content(new QWidget)
{
    setBackgroundAndBorder(Qt::white, 1, QColor(0xCCCCCC), true);
    setContentsMargins(0, 0, 0, 0);
    setStyleSheet(
        QStringLiteral("#th { background: #EEE; text-align: left; padding: 8px 4px; border: 0; "
                       "border-radius: 3px; }"));
    m_grid->setSpacing(1);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_content->setContentsMargins(0, 0, 0, 0);
    m_content->setLayout(m_grid);

    buildHeader();
    m_grid->setColumnStretch(4, 100);
    add(m_content);
    setStage(nullptr);
    setEditing(false);
}

void TarveloStageEditor::buildHeader()
{
    static const QIcon addIcon = MediaHelper::icon(QStringLiteral(":/resources/Images/add.svg"));
    m_addButton = makeIconButton(addIcon, QString(), tr("Добавить шаг"), QString(), QSize(24, 24));
    connect(m_addButton, &QPushButton::clicked, this, &TarveloStageEditor::addStep);
    m_grid->addWidget(m_addButton, 0, 0);

    const QString ms = QCoreApplication::translate("Generic", "ms");
    struct Column
    {
        QString text;
        QString toolTip;
        const char *icon;
    };
    const Column columns[] = {
        {tr("Стимул"), tr("Стимул"), "alarm-light.svg"},
        {QStringLiteral("T, ") + ms, tr("Длительность стимула"), "time-stim.svg"},
        {QStringLiteral("t, ") + ms, tr("Задержка после стимулом"), "time-delay.svg"},
    };
    for (int i = 0; i < 3; ++i) {
        QPushButton *header = makeIconButton(MediaHelper::icon(QStringLiteral(":/resources/Images/")
                                                               + QLatin1String(columns[i].icon)),
                                             columns[i].text, columns[i].toolTip,
                                             QStringLiteral("th"), QSize(16, 16));
        header->setMinimumHeight(32);
        header->setContentsMargins(10, 0, 0, 0);
        m_grid->addWidget(header, 0, i + 1);
    }
}

void TarveloStageEditor::buildRow(int row)
{
    const int gridRow = row + 1;
    auto *label = new QLabel(QString::number(row + 1));
    label->setObjectName(QStringLiteral("th"));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *combo = makeUniformComboBox();
    combo->setObjectName(QStringLiteral("editable"));
    for (const StimulusItem &item : stimulusItems())
        combo->addItem(item.icon, item.text);

    QSpinBox *duration = makeTimeSpin();
    QSpinBox *delay = makeTimeSpin();

    auto *cell = new QWidget;
    cell->setContentsMargins(0, 0, 0, 0);
    auto *cellGrid = new QGridLayout(cell);
    cellGrid->setContentsMargins(0, 0, 0, 0);
    auto *actions = new DeleteUpDownWidget;
    cellGrid->addWidget(actions, 0, 0, Qt::AlignLeft);

    m_grid->addWidget(label, gridRow, 0);
    m_grid->addWidget(combo, gridRow, 1);
    m_grid->addWidget(duration, gridRow, 2);
    m_grid->addWidget(delay, gridRow, 3);
    m_grid->addWidget(cell, gridRow, 4, Qt::AlignLeft);
    // Sized read-only, without the arrows that only edit mode shows, so that a row built during
    // an edit is as wide as the rest and the table keeps its columns when the edit ends.
    for (QWidget *input : std::initializer_list<QWidget *> {combo, duration, delay}) {
        input->setEnabled(false);
        input->adjustSize();
    }

    connect(combo, qOverload<int>(&QComboBox::currentIndexChanged), this, [this, row](int index) {
        if (hasStep(row))
            m_stage->steps.at(row)->stimulus = index;
    });
    connect(duration, qOverload<int>(&QSpinBox::valueChanged), this, [this, row](int value) {
        if (hasStep(row))
            m_stage->steps.at(row)->duration = value;
    });
    connect(delay, qOverload<int>(&QSpinBox::valueChanged), this, [this, row](int value) {
        if (hasStep(row))
            m_stage->steps.at(row)->delay = value;
    });
    connect(actions, &DeleteUpDownWidget::onDelete, this, [this, row] { deleteStep(row); });
    connect(actions, &DeleteUpDownWidget::onUp, this, [this, row] { moveUp(row); });
    connect(actions, &DeleteUpDownWidget::onDown, this, [this, row] { moveDown(row); });

    m_rowLabels << label;
    m_stimulusCombos << combo;
    m_durationSpins << duration;
    m_delaySpins << delay;
    m_actionCells << cell;
    m_actionWidgets << actions;
}

bool TarveloStageEditor::hasStep(int row) const
{
    return m_stage && row < m_stage->steps.size();
}

void TarveloStageEditor::setStage(ScriptStage *stage)
{
    m_stage = stage;
    // Steps beyond the thirtieth stay in the stage and are not shown.
    const int shown = stage ? qMin(int(stage->steps.size()), MaxRows) : 0;
    // Rows are built when a stage first needs them, then kept: most stages are short, and a
    // start with no script needs none.
    for (int row = m_rowLabels.size(); row < shown; ++row)
        buildRow(row);
    for (int row = 0; row < m_rowLabels.size(); ++row) {
        const bool visible = row < shown;
        m_rowLabels.at(row)->setVisible(visible);
        m_stimulusCombos.at(row)->setVisible(visible);
        m_durationSpins.at(row)->setVisible(visible);
        m_delaySpins.at(row)->setVisible(visible);
        m_actionWidgets.at(row)->setVisible(visible);
        if (!visible)
            continue;
        // Filling writes nothing back: a time over the spin's range keeps its stored value.
        const ScriptStep *step = stage->steps.at(row);
        const QSignalBlocker comboBlocker(m_stimulusCombos.at(row));
        const QSignalBlocker durationBlocker(m_durationSpins.at(row));
        const QSignalBlocker delayBlocker(m_delaySpins.at(row));
        m_stimulusCombos.at(row)->setCurrentIndex(step->stimulus);
        m_durationSpins.at(row)->setValue(step->duration);
        m_delaySpins.at(row)->setValue(step->delay);
    }
    setEditing(m_editing);
}

void TarveloStageEditor::setEditing(bool editing)
{
    m_editing = editing;
    for (int row = 0; row < m_rowLabels.size(); ++row) {
        m_stimulusCombos.at(row)->setEnabled(editing);
        m_durationSpins.at(row)->setEnabled(editing);
        m_delaySpins.at(row)->setEnabled(editing);
        m_actionCells.at(row)->setVisible(editing);
    }
    m_addButton->setVisible(editing && m_stage && m_stage->steps.size() < MaxRows);
}

void TarveloStageEditor::refresh()
{
    setStage(m_stage);
    setEditing(true);
}

void TarveloStageEditor::addStep()
{
    if (!m_stage)
        return;
    auto *step = new ScriptStep;
    step->stimulus = TarveloCommon::LED_TOP_Green;
    step->duration = NewStepDuration;
    step->delay = NewStepDelay;
    m_stage->steps << step;
    refresh();
}

void TarveloStageEditor::deleteStep(int row)
{
    if (!hasStep(row))
        return;
    delete m_stage->steps.takeAt(row);
    refresh();
}

void TarveloStageEditor::moveUp(int row)
{
    if (!hasStep(row) || row < 1)
        return;
    m_stage->steps.swapItemsAt(row, row - 1);
    refresh();
}

void TarveloStageEditor::moveDown(int row)
{
    // The next-to-last row refuses to move down; the last pair is exchanged by moving the last
    // row up. Operators know the table this way.
    if (!m_stage || row >= m_stage->steps.size() - 2)
        return;
    m_stage->steps.swapItemsAt(row, row + 1);
    refresh();
}
