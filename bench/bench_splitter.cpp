// Throughput of the frame splitter on a large noisy stream, read in serial-port-sized chunks and
// decoded per read as the live link does it.
#include "device/TarveloMessage.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextStream>

namespace {
constexpr int StreamBytes = 64 * 1024 * 1024;
constexpr int ReadBytes = 4096;

QByteArray noisyStream(int *frames)
{
    const QList<QByteArray> reports {
        "{r=412;b=3;b2=3;s=3;t=2000;d=1000}",
        "{state=100000000000;btns=000000010}",
        QStringLiteral("{scriptStarted=Проба внимания}").toUtf8(),
        "{stageAction=+1}",
        "{r=-3000;b=10;b2=5;s=13;t=2000;d=1000}",
    };
    const QList<QByteArray> noise {"\r\n", "rst:0x1 boot}", QByteArray("\xff\xfe\x00\xc3", 4), ""};
    QRandomGenerator random(7);
    QByteArray stream;
    stream.reserve(StreamBytes + 64);
    *frames = 0;
    while (stream.size() < StreamBytes) {
        stream += noise.at(int(random.bounded(noise.size())));
        stream += reports.at(int(random.bounded(reports.size())));
        ++*frames;
    }
    return stream;
}
} // namespace

int main()
{
    int frames = 0;
    const QByteArray stream = noisyStream(&frames);
    TarveloMessage splitter;
    int received = 0;
    QObject::connect(&splitter, &TarveloMessage::messageReceived, [&received] { ++received; });

    QElapsedTimer timer;
    timer.start();
    for (int from = 0; from < stream.size(); from += ReadBytes)
        splitter.parseBytes(stream.mid(from, ReadBytes));
    const double seconds = timer.nsecsElapsed() / 1e9;

    QTextStream out(stdout);
    out << "splitter: " << stream.size() / (1024.0 * 1024.0) << " MB in " << ReadBytes
        << "-byte reads, " << received << " of " << frames << " frames, " << seconds << " s, "
        << stream.size() / (1024.0 * 1024.0) / seconds << " MB/s, " << received / seconds / 1e6
        << " M messages/s\n";
    return received > 0 ? 0 : 1;
}
