// Reports per second through the whole receiving path of a run: the frame splitter, the device's
// dispatch and the model's handler, for long recorded runs read in serial-port-sized chunks.
// Set against what a 115200-baud link (8N1: 11,520 bytes/s) can carry of the same stream.
//
// The device logs each report with qDebug; the lines are formatted but not written, so the
// figures leave out the terminal. Nothing listens to sessionUpdated: the live view's rebuild
// is not part of this path.
#include "RecordedRun.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/TarveloDevice.h"
#include "device/TarveloMessage.h"
#include "support/TestDataFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {
constexpr double LinkBytesPerSecond = 115200 / 10.0;
constexpr int ReadBytes = 64;
constexpr int Rounds = 5;

// The best of a few rounds, in seconds.
double best(const std::function<void()> &round)
{
    double fastest = 1e9;
    for (int i = 0; i < Rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        round();
        fastest = std::min(fastest, timer.nsecsElapsed() / 1e9);
    }
    return fastest;
}

void feed(TarveloMessage &splitter, const QByteArray &bytes)
{
    for (int from = 0; from < bytes.size(); from += ReadBytes)
        splitter.parseBytes(bytes.mid(from, ReadBytes));
}

void report(const char *path, const RecordedRun &stream, double seconds)
{
    const double wireSeconds = stream.bytes.size() / LinkBytesPerSecond;
    const double handled = stream.messages / seconds;
    std::printf("  %-28s %12.0f messages/s %8.2f MB/s %10.0f x the link\n", path, handled,
                stream.bytes.size() / seconds / 1e6, handled / (stream.messages / wireSeconds));
}

void measure(const char *shape, const RecordedRun &stream, TarveloModel &model)
{
    const double wireSeconds = stream.bytes.size() / LinkBytesPerSecond;
    std::printf("%s: %d messages, %d bytes (%.1f bytes/message), %d-byte reads\n", shape,
                stream.messages, int(stream.bytes.size()),
                double(stream.bytes.size()) / stream.messages, ReadBytes);
    std::printf("  %-28s %12.0f messages/s, the stream takes %.1f s on the wire\n",
                "115200-baud link carries", stream.messages / wireSeconds, wireSeconds);

    TarveloMessage splitterOnly;
    report("splitter", stream, best([&] { feed(splitterOnly, stream.bytes); }));

    // A device of its own with nobody on its onMessage: the dispatch alone.
    TarveloDevice device(99);
    TarveloMessage toDevice;
    QObject::connect(&toDevice, &TarveloMessage::messageReceived, &device,
                     &TarveloDevice::handleMessage);
    report("splitter + device", stream, best([&] { feed(toDevice, stream.bytes); }));

    // The model's own device, which hands every report to the model's handler.
    TarveloMessage toModel;
    QObject::connect(&toModel, &TarveloMessage::messageReceived, model.device(),
                     &TarveloDevice::handleMessage);
    QList<TarveloSession *> sessions;
    report("splitter + device + model", stream, best([&] {
               feed(toModel, stream.bytes);
               sessions << model.session();
           }));
    const int recorded = model.session()->stages().size();
    // Each round began a new session; the model leaves replaced ones to their viewers.
    sessions.removeAll(model.session());
    qDeleteAll(sessions);
    if (recorded == 0)
        std::printf("  (the model recorded nothing)\n");
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const TestDataFolder data;
    qunsetenv("TARVELO_EXTRA_PORTS");
    // A fixed port that no machine has, so that the search opens nothing meanwhile.
    data.writeSettings("<AutoSearch>false</AutoSearch><ComPort>99</ComPort>");
    TarveloModel model;

    measure("typical run, 400 stages of 30 steps", RecordedRun::play(400, 30), model);
    measure("long stages, 20 stages of 600 steps", RecordedRun::play(20, 600), model);
    return 0;
}
