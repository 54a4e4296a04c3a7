#pragma once

#include <QDialog>
#include <QList>
#include <QMap>
#include <QStringList>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

// Writes new firmware to the box's board: unpacks a package into a folder of its own inside the
// data folder, checks that every file the board type needs is there, lets the operator tick the
// ports and runs the flashing tool once for each. The folder goes when the dialog closes; while
// the tool runs the dialog can't be closed, but the window stays alive and shows its output.
class ComUpdaterWidget : public QDialog
{
    Q_OBJECT
public:
    // type: FirmwarePackage::BoardType. extension: the package's, without a point. tool: a
    // program name, or "self-" and a name for a tool inside the package. ports: ticked
    // beforehand; exactly one entry beginning with "-" is a fixed port, the only one offered.
    ComUpdaterWidget(int type, const QString &extension, const QString &tool,
                     const QStringList &ports, QWidget *parent = nullptr);
    ~ComUpdaterWidget() override;

    // Unpacks and checks a package, as "Open firmware file" does once a file is chosen.
    void openPackage(const QString &path);
    // The folder of the unpacked package; empty when there is none.
    QString tempFolder() const { return m_tempFolder; }

    void done(int result) override;

private:
    void choosePackage();
    void dropPackage();
    QString makeTempFolder() const;
    void showValidity();
    void update();
    void setFlashing(bool on);

    QString m_firmwarePath;
    QMap<QString, QString> m_files;
    QMap<QString, QString> m_requiredFiles;
    QList<QCheckBox *> m_portBoxes;
    QString m_tempFolder;
    int m_type;
    QString m_extension;
    QString m_tool;
    QString m_baseFolder;
    bool m_flashing = false;

    QPushButton *m_openButton;
    QLabel *m_label;
    QCheckBox *m_validBox;
    QWidget *m_portsPanel;
    QPushButton *m_updateButton;
    QPlainTextEdit *m_output;
};
