#pragma once

#include "foundation/widgets/NScrollViewer.h"

#include <QList>

class DeleteUpDownWidget;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QSpinBox;
struct ScriptStage;

// The step table of one stage: number, stimulus, duration and delay per row, and in edit mode
// the row buttons. Up to 30 rows, the most a stage shows, are built as stages need them and
// only shown, hidden and refilled afterwards. Every input writes into the stage's steps at once.
class TarveloStageEditor : public NScrollViewer
{
    Q_OBJECT
public:
    static constexpr int MaxRows = 30;

    explicit TarveloStageEditor(QWidget *parent = nullptr);

    void setStage(ScriptStage *stage);
    void setEditing(bool editing);

    QPushButton *addButton() const { return m_addButton; }
    // Rows of the steps shown so far; a row no stage has needed yet isn't built.
    QComboBox *stimulusCombo(int row) const { return m_stimulusCombos.at(row); }
    QSpinBox *durationSpin(int row) const { return m_durationSpins.at(row); }
    QSpinBox *delaySpin(int row) const { return m_delaySpins.at(row); }
    DeleteUpDownWidget *actionWidget(int row) const { return m_actionWidgets.at(row); }

private:
    void buildHeader();
    void buildRow(int row);
    // Whether the row shows a step of the stage; only such rows write back.
    bool hasStep(int row) const;
    void addStep();
    void deleteStep(int row);
    void moveUp(int row);
    void moveDown(int row);
    // The table anew after a row operation, still in edit mode.
    void refresh();

    ScriptStage *m_stage = nullptr;
    QGridLayout *m_grid = nullptr;
    QWidget *m_content = nullptr;
    QPushButton *m_addButton = nullptr;
    bool m_editing = false;
    QList<QLabel *> m_rowLabels;
    QList<QSpinBox *> m_durationSpins;
    QList<QSpinBox *> m_delaySpins;
    QList<QWidget *> m_actionCells;
    QList<DeleteUpDownWidget *> m_actionWidgets;
    QList<QComboBox *> m_stimulusCombos;
};
