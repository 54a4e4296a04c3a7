#pragma once

#include <QList>
#include <QWidget>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableWidget;
class TarveloModel;
class TarveloScript;
struct ScriptStage;

// The generator of random scripts (script mode: a title and up to 15 stages) and of single
// stages (stage mode). A separate non-modal window that only collects the parameters; the
// caller asks for the result when acceptScript or acceptStage arrives, before the window closes.
class ScriptCreatorWidget : public QWidget
{
    Q_OBJECT
public:
    static constexpr int MaxStages = 15;

    ScriptCreatorWidget(TarveloModel *model, bool scriptMode, QWidget *parent = nullptr);

    // New objects, owned by the caller. Stage mode asks for row 0.
    TarveloScript *createScript();
    ScriptStage *createStage(int row);

    QLineEdit *nameEdit() const { return m_nameEdit; }
    QSpinBox *stageCountSpin() const { return m_stageCountSpin; }
    QTableWidget *table() const { return m_table; }
    QPushButton *createButton() const { return m_createButton; }
    QLabel *loopLabel() const { return m_labelLoop; }
    // The spin box of a table cell: 0 steps, 1 T, 2 ΔT, 3 t, 4 Δt.
    QSpinBox *cell(int row, int column) const;

signals:
    void acceptScript();
    void acceptStage();
    void cancel();

private:
    QWidget *buildStimuli();
    void buildTable();
    void checkName(const QString &text);
    void setStimulusAllowed(int stimulus, bool allowed);
    // Create is open when the title (script mode) is fine and no row asks for more steps than
    // the allowed stimuli can give.
    void updateCreate();
    bool drawCanEnd() const;

    bool m_scriptMode;
    int m_stageCount;
    TarveloModel *m_model;
    QString m_scriptName;
    bool m_nameValid = false;
    QTableWidget *m_table = nullptr;
    QGridLayout *m_layout = nullptr;
    QSpinBox *m_stageCountSpin = nullptr;
    QLineEdit *m_nameEdit = nullptr;
    QLabel *m_labelEmptyName = nullptr;
    QLabel *m_labelUsedName = nullptr;
    QLabel *m_labelLoop = nullptr;
    QPushButton *m_createButton = nullptr;
    QList<int> m_stimuli;
};
