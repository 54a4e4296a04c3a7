#pragma once

#include "frame/HeaderedWidget.h"

#include <QString>

class QPushButton;
class TarveloScriptEditor;

// Tab 0: the current script in its editor, with delete, edit, create, save and cancel in the
// header. In edit mode the operator works on the model's own script object; only Save writes
// the file and Cancel reads it again.
class PageScript : public HeaderedWidget
{
    Q_OBJECT
public:
    explicit PageScript(TarveloModel *model, QWidget *parent = nullptr);

    bool isEditing() const { return m_editing; }
    // Whether the script differs from what it was when the edit began.
    bool hasUnsavedChanges() const;
    // Ends edit mode before the operator goes elsewhere; with unsaved changes asks whether to
    // save them. False when the operator chose to stay (or the save failed): edit mode goes on.
    bool leaveEditing();

    TarveloScriptEditor *editor() const { return m_editor; }
    QPushButton *deleteButton() const { return m_deleteButton; }
    QPushButton *createButton() const { return m_createButton; }
    QPushButton *editButton() const { return m_editButton; }
    QPushButton *saveButton() const { return m_saveButton; }
    QPushButton *cancelButton() const { return m_cancelButton; }

signals:
    void onStartEditScript();
    void onEndEditScript();

private:
    void setEditing(bool editing);
    void showScript();
    void updatePlay();
    void deleteScript();
    bool save();
    void cancel();
    void openCreator();
    void titleChecked(const QString &problem);
    // Tells why nothing was written when the title is the reason; a file the system refused is
    // announced with its reason on WriteFailures, and the window shows that.
    void showNotWritten(const QString &problem, const QString &title) const;

    TarveloScriptEditor *m_editor;
    QPushButton *m_deleteButton = nullptr;
    QPushButton *m_createButton = nullptr;
    QPushButton *m_editButton = nullptr;
    QPushButton *m_saveButton = nullptr;
    QPushButton *m_cancelButton = nullptr;
    bool m_editing = false;
    // The script's text when the edit began, to tell whether leaving loses anything.
    QString m_textBeforeEdit;
};
