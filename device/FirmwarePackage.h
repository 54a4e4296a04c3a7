#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

// A firmware package: a ZIP archive with the images for one board type and, when the tool is
// named "self-…", the flashing tool itself. Unpacks into a folder of its own and finds which of
// the unpacked files plays which role.
namespace FirmwarePackage {

enum BoardType { Esp32 = 0, AtMega2560 = 1 };

// A tool named with this prefix is a file of the package.
inline const QString SelfPrefix = QStringLiteral("self-");
inline const QString ToolPattern = QStringLiteral(".exe");

// The roles of the files, as the tools' command lines use them.
namespace Role {
inline const QString Conf = QStringLiteral("conf");
inline const QString Hex = QStringLiteral("hex");
inline const QString Ino = QStringLiteral("ino");
inline const QString Bootloader = QStringLiteral("bootloader");
inline const QString BootApp = QStringLiteral("boot_app");
inline const QString Partitions = QStringLiteral("partitions");
} // namespace Role

// What a package of this board type must hold, name pattern to role. The patterns are matched
// in the map's order, so an earlier pattern takes a file first.
QMap<QString, QString> requiredFiles(int type, const QString &tool);

enum class Unpacked { Done, Unreadable, Refused };
struct UnpackResult
{
    Unpacked outcome = Unpacked::Unreadable;
    // The entry that refused the package, or that couldn't be read.
    QString entry;
};
// Unpacks the archive, held in memory, into the folder. An entry whose name would land outside
// the folder ("../", absolute paths) or that is a symbolic link refuses the whole package before
// anything is written. Files keep the Unix permissions the archive gives them.
UnpackResult unpack(const QByteArray &archive, const QString &folder);

// Role to path: the files directly in the folder, by name ignoring case, each taken by the
// first pattern in order that its name contains. A file once taken isn't matched again. Off
// Windows the tool may also come without ".exe": a file named as the tool's role counts.
QMap<QString, QString> findFiles(const QString &folder, const QMap<QString, QString> &required);

} // namespace FirmwarePackage
