#pragma once

#include <QString>
#include <QStringList>

// How the box moves on at the end of a stage: the keys under which a script stage holds the
// error counts that trigger each transfer, and the words the box reports for the transfer it
// made. Scripts, the upload, the report and the box emulator all take them from here.
namespace StageTransfer {

// The keys of a stage's header.
namespace Key {
inline const QString Stop = QStringLiteral("stop");      // stops the script
inline const QString BackTwo = QStringLiteral("s-2");    // goes back two stages
inline const QString BackOne = QStringLiteral("s-1");    // goes back one stage
inline const QString Repeat = QStringLiteral("s-0");     // repeats the stage
inline const QString NextOne = QStringLiteral("s+1");    // goes on one stage
inline const QString NextTwo = QStringLiteral("s+2");    // goes on two stages
inline const QString MaxRepeats = QStringLiteral("rpt"); // not a transfer: the most repeats
} // namespace Key

// The seven keys in file and wire order, which is also the order of the transfers everywhere in
// the interface: "stop", "s-2", "s-1", "s-0", "s+1", "s+2", "rpt".
const QStringList &keys();

// What the box reports in "stageAction=" for the transfer it made.
namespace Action {
inline const QString Stop = QStringLiteral("stop");
inline const QString MaxRepeats = QStringLiteral("maxRepeats");
inline const QString Repeat = QStringLiteral("repeat");
inline const QString BackTwo = QStringLiteral("-2");
inline const QString BackOne = QStringLiteral("-1");
inline const QString NextOne = QStringLiteral("+1");
inline const QString NextTwo = QStringLiteral("+2");
} // namespace Action

} // namespace StageTransfer
