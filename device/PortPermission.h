#pragma once

#include <QString>

// Whether this user may use a serial port that exists, and what would let them. On Linux the
// ports belong to a group ("dialout" on Debian) that a user must join; on Windows a refused port
// is one that another program holds, and no group applies.
class PortPermission
{
public:
    static const char *const DefaultGroup;

    // The device file that QSerialPort opens for a port name.
    static QString location(const QString &portName);
    // True when a port that failed to open with a permission error refuses this user as such,
    // rather than being locked by another program that this user may well share the port with.
    static bool refusesUser(const QString &portName);
    // The group whose members may read and write the port: the device file's own group when
    // that group has both rights, else the distribution's group for serial ports. Empty on
    // Windows.
    static QString groupToJoin(const QString &portName);
};
