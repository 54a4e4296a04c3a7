#pragma once

#include "data/StageTransfer.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

class TarveloScript;

// The words of the wire protocol, each in one place, and the pure pieces of its grammar. The
// link (TarveloDevice) and the box emulator both speak through these.
namespace DeviceProtocol {

// Commands, program to box.
inline const QString Greeting = QStringLiteral("tarvelo");
inline const QString AskSerialNumber = QStringLiteral("sn");
inline const QString AskVersion = QStringLiteral("version");
inline const QString StatusOn = QStringLiteral("statusOn");
inline const QString StatusOff = QStringLiteral("statusOff");
inline const QString LampTest = QStringLiteral("led=");
inline const QString ToneTest = QStringLiteral("stim=");
inline const QString LampSet = QStringLiteral("led_");
inline const QString GetSettings = QStringLiteral("getsettings");
inline const QString SetSettings = QStringLiteral("settings=");
inline const QString WriteSerialNumber = QStringLiteral("writesn=");
inline const QString ScriptHeader = QStringLiteral("scriptHeader=");
inline const QString StartAddStage = QStringLiteral("startAddStage=");
inline const QString AddItem = QStringLiteral("addItem=");
inline const QString StopAddStage = QStringLiteral("stopAddStage");
inline const QString SaveScript = QStringLiteral("saveScript=");
inline const QString StartScript = QStringLiteral("startScript");
inline const QString Stop = QStringLiteral("stop");

// Reports, box to program.
inline const QString GreetingAnswer = QStringLiteral("iamtarvelo");
inline const QString SerialNumberReport = QStringLiteral("sn=");
inline const QString VersionReport = QStringLiteral("version=");
inline const QString SettingsReport = QStringLiteral("settings:");
inline const QString StateReport = QStringLiteral("state=");
inline const QString ButtonsPiece = QStringLiteral("btns=");
inline const QString ScriptStarted = QStringLiteral("scriptStarted=");
inline const QString ScriptFinished = QStringLiteral("scriptFinished");
inline const QString StageStarted = QStringLiteral("stageStarted=");
inline const QString StageAction = QStringLiteral("stageAction=");
inline const QString StageItems = QStringLiteral("stageItems=");
inline const QString ReactionReport = QStringLiteral("r=");

// Box options, as named in "settings:" reports and "settings=" commands.
inline const QString AudioInvert = QStringLiteral("audioInvert");
inline const QString PedalInvert = QStringLiteral("pedalInvert");
inline const QString FlashAll = QStringLiteral("flashAll");
inline const QString SoundErrors = QStringLiteral("soundErrors");

// What the box reports after a stage in "stageAction=": the words that scripts and reports share.
namespace Action = StageTransfer::Action;

// Pacing of a script upload: each item waits this long for its bytes and once more after.
constexpr int UploadDelayMs = 13;
// The most bytes one write may carry; longer frames go out in pieces of this size.
constexpr int ChunkBytes = 128;
// "startScript" follows the last upload item after this pause.
constexpr int StartScriptDelayMs = 1000;
// The greeting goes to a candidate port this long after it opened.
constexpr int GreetingDelayMs = 1000;

// "{" text "}" in UTF-8, cut into writes of at most ChunkBytes bytes. A cut may fall inside a
// multi-byte character: the box reads a plain byte stream.
QList<QByteArray> framePieces(const QString &text);

struct UploadCommand
{
    QString text;
    int delayMs = UploadDelayMs;
};

// The commands of a script upload in order: the header entries, then for each stage its
// header, its steps and the stage end, then "saveScript=" when saveSlot is 0 or more.
// A ";" inside a header text splits that field into two entries; there is no escape.
QVector<UploadCommand> uploadCommands(const TarveloScript &script, int saveSlot);
// The progress total of an upload. It counts the header as one item although each of its
// entries ticks, so an upload always ends on -1.
int uploadTotal(const TarveloScript &script);

// A "state=" report: one lamp per character in Stimulus order, and the nine controls in
// Button order when the report has a "btns=" piece.
struct State
{
    QList<bool> lamps;
    bool hasButtons = false;
    QList<bool> buttons;
};
State parseState(const QString &body);
constexpr int ReportedButtons = 9;

// True for the texts that mark a box without a serial number of its own.
bool marksMissingSerialNumber(const QString &message);
// True when a "settings:" report says the option is on.
bool optionIsOn(const QString &message, const QString &option);

} // namespace DeviceProtocol
