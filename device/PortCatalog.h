#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// One serial port that the search may try.
struct PortCandidate
{
    QString name; // what QSerialPort is opened by: a system name or a full device path
    QString description;
    QString manufacturer;
    QString serialNumber;
};

// The ports the search looks at. The system's own list is extended by the device paths named in
// TARVELO_EXTRA_PORTS, which is how pseudo-terminals (the box emulator) and symlinked devices,
// which no system enumeration reports, become candidates.
class PortCatalog
{
public:
    static const char *const ExtraPortsVariable;

    // QSerialPortInfo::availablePorts() in its order, then the extra paths in theirs; a path
    // that is already in the system list is not repeated.
    static QList<PortCandidate> candidates();
    // The paths of TARVELO_EXTRA_PORTS, separated by ":" (";" on Windows), empty pieces dropped.
    static QStringList extraPorts();

    // Built-in serial ports with that Russian system description, and Bluetooth ports, are
    // never tried, whatever the port filter says.
    static bool isExcluded(const QString &description);

    // The number the port filter compares with. The Windows rule comes first: the name with
    // "COM" removed, read as a decimal number ("COM7" gives 7). A name that doesn't convert that
    // way gives its trailing decimal digits ("ttyUSB3" gives 3, "/dev/pts/7" gives 7), and a
    // name without them gives 0.
    static int portNumber(const QString &name);

    // What an outside tool opens the port by. Off Windows a system name gets its folder
    // ("ttyUSB0" is "/dev/ttyUSB0") and a path stays as it is; on Windows it is the name.
    static QString systemLocation(const QString &name);
};
