#pragma once

#include "foundation/ConnectionHelper.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class TarveloDevice;

// The box's own service dialog: its serial number and firmware version, the three options it
// stores, and the way to new firmware. The options show what the box last reported; a click
// asks the box to change one and to report again.
class TarveloSettingsWidget : public QDialog
{
    Q_OBJECT
public:
    // editSerial: the serial number can be written to the box (service mode).
    explicit TarveloSettingsWidget(bool editSerial, QWidget *parent = nullptr);

private:
    void changeOption(const QString &key, bool current, QCheckBox *waiting);
    void writeSerialNumber();
    void updateFirmware();
    void showSerialNumber(const QString &text);

    TarveloDevice *m_device = nullptr;
    ConnectionHelper m_connections;
    QWidget *m_panel = nullptr;
    QLineEdit *m_serialEdit = nullptr;
    QLabel *m_serialLabel = nullptr;
    QLabel *m_versionLabel = nullptr;
    QCheckBox *m_audioBox = nullptr;
    QCheckBox *m_pedalsBox = nullptr;
    QCheckBox *m_flashAllBox = nullptr;
};
