#pragma once

#include "foundation/ConnectionHelper.h"

#include <QList>
#include <QMap>
#include <QPointer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class ScriptCreatorWidget;
class TarveloModel;
class TarveloScript;
class TarveloStageEditor;
struct ScriptStage;

// The form of one script: texts, tones, the full-step-time flag, the numbered stage buttons,
// the transfers of the selected stage and its step table. There is no buffer: every input
// writes into the script at once. Read-only unless the page puts it in edit mode.
class TarveloScriptEditor : public QWidget
{
    Q_OBJECT
public:
    // The outcomes of a stage's transfers, as the box names them.
    enum StageAdvance { StopScript = -100, RepeatStage = 0, NextStage = 1, NextSecondStage = 2 };
    Q_ENUM(StageAdvance)

    explicit TarveloScriptEditor(TarveloModel *model, QWidget *parent = nullptr);

    void setScript(TarveloScript *script);
    void setEditing(bool editing);
    void selectStage(int index);

    // Why the typed title can't be saved; empty when it can.
    QString titleProblem() const { return m_titleProblem; }

    QLineEdit *titleEdit() const { return m_titleEdit; }
    QLineEdit *descriptionEdit() const { return m_descriptionEdit; }
    QLineEdit *messageEdit() const { return m_messageEdit; }
    QSpinBox *toneLoSpin() const { return m_toneLoSpin; }
    QSpinBox *toneHiSpin() const { return m_toneHiSpin; }
    QCheckBox *fullTimeCheck() const { return m_fullTimeCheck; }
    QComboBox *transferCombo(const QString &key) const { return m_transferCombos.value(key); }
    QList<QPushButton *> stageButtons() const { return m_stageButtons; }
    QPushButton *addStageButton() const { return m_addStageButton; }
    QPushButton *removeStageButton() const { return m_removeStageButton; }
    QLabel *titleProblemLabel() const { return m_titleProblemLabel; }
    TarveloStageEditor *stageEditor() const { return m_stageEditor; }
    ScriptStage *currentStage() const { return m_currentStage; }

signals:
    // The title was checked anew; problem is empty when it can be saved.
    void titleChecked(const QString &problem);

private:
    QWidget *buildTransfers();
    void rebuild();
    void rebuildStageButtons();
    void fillStage();
    void checkTitle();
    void addStage();
    void removeStage();
    void closeStageCreator();

    TarveloModel *m_model;
    TarveloScript *m_script = nullptr;
    ConnectionHelper m_scriptConnections;
    ConnectionHelper m_stageConnections;
    QGridLayout *m_layout = nullptr;
    QList<QPushButton *> m_stageButtons;
    QPushButton *m_addStageButton = nullptr;
    QPushButton *m_removeStageButton = nullptr;
    bool m_editing = false;
    QList<QWidget *> m_editableWidgets;
    QHBoxLayout *m_stageRow = nullptr;
    QLineEdit *m_titleEdit = nullptr;
    QLineEdit *m_descriptionEdit = nullptr;
    QLineEdit *m_messageEdit = nullptr;
    QSpinBox *m_toneLoSpin = nullptr;
    QSpinBox *m_toneHiSpin = nullptr;
    QMap<QString, QComboBox *> m_transferCombos;
    QCheckBox *m_fullTimeCheck = nullptr;
    ScriptStage *m_currentStage = nullptr;
    TarveloStageEditor *m_stageEditor = nullptr;
    QLabel *m_titleProblemLabel = nullptr;
    QString m_titleProblem;
    QPointer<ScriptCreatorWidget> m_stageCreator;
};
