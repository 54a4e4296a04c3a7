// Duration of a 15 x 30 script upload to the emulator against the pacing floor of 2 x 13 ms per
// item (the wait for the bytes and the sleep). The wait ends as soon as the bytes are out, which
// on a pseudo-terminal is at once, so the sleep alone (13 ms per item) is printed too.
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTextStream>

namespace {
constexpr int Stages = 15;
constexpr int StepsPerStage = 30;
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    EmulatorProcess emulator;
    if (!emulator.start()) {
        out << "the emulator didn't start\n";
        return 1;
    }
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    if (!QTest::qWaitFor([&device] { return !device.version().isEmpty(); }, 10000)) {
        out << "no link to the emulator\n";
        return 1;
    }

    TarveloScript script;
    script.setTitle(QStringLiteral("Нагрузка"));
    script.setDescription(QStringLiteral("15 ступеней по 30 шагов"));
    QList<int> stimuli;
    for (int s = 0; s < 18; ++s)
        stimuli << s;
    for (int i = 0; i < Stages; ++i) {
        ScriptStage *stage = ScriptStage::generate(StepsPerStage, stimuli, 2000, 1000, 500, 500);
        stage->setValue(QStringLiteral("stop"), QStringLiteral("5"));
        stage->setValue(QStringLiteral("s+1"), QStringLiteral("0"));
        script.addStage(stage);
    }
    const int items = DeviceProtocol::uploadCommands(script, -1).size();

    QElapsedTimer timer;
    timer.start();
    device.uploadScript(&script, -1, false);
    const qint64 elapsed = timer.elapsed();
    const qint64 floor = qint64(items) * 2 * DeviceProtocol::UploadDelayMs;
    const qint64 sleeps = qint64(items) * DeviceProtocol::UploadDelayMs;

    const bool arrived = QTest::qWaitFor(
        [&] { return emulator.commands().count(QStringLiteral("stopAddStage")) == Stages; }, 10000);
    out << "upload: " << Stages << " x " << StepsPerStage << " script, " << items << " items, "
        << elapsed << " ms against a floor of " << floor << " ms, ratio " << double(elapsed) / floor
        << "; against the sleeps alone (" << sleeps << " ms) " << double(elapsed) / sleeps
        << (arrived ? ", all stages arrived" : ", STAGES MISSING") << "\n";
    return arrived ? 0 : 1;
}
