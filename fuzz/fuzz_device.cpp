// The reports of the box, from the bytes of the serial link to the session record: the input is
// what the box sends, cut into reads at lengths taken from the input itself, and goes through
// TarveloDevice's splitter and dispatch into TarveloModel::handleDeviceMessage, exactly as the
// reads of a live port do. The operator's stop button is pressed after a read whose length byte
// is 0xff, so that runs end in the middle of a stream as well.
//
// One model serves the whole run, as in the program; its data folder lies in a temporary HOME
// with a subject selected, so that finished sessions are written to the subject's folder. Each
// input begins with a fresh session, as after "scriptStarted=".
#include "FuzzSupport.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/TarveloDevice.h"
#include "support/TestDataFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopedPointer>

using namespace FuzzSupport;

namespace {

TarveloModel *model = nullptr;
// The session that the model dropped last: the fuzzer stands in for the views that would keep
// it, and releases it once the model has replaced it.
TarveloSession *shownSession = nullptr;

// A folder in memory where there is one, as every finished session writes a file.
QString temporaryBase()
{
    const QFileInfo shm(QStringLiteral("/dev/shm"));
    return shm.isDir() && shm.isWritable() ? shm.filePath() : QDir::tempPath();
}

void releaseReplacedSession()
{
    if (shownSession != model->session())
        delete shownSession;
    shownSession = model->session();
}

QString indentedJson(const TarveloSession *session)
{
    return QString::fromUtf8(QJsonDocument(session->toJson()).toJson());
}

// What the model wrote at the end of a run reads back as the record that it holds.
void checkWrittenSession()
{
    const TarveloSession *session = model->session();
    const QString file = model->userFolder(model->currentUser()) + session->fileName();
    const QScopedPointer<TarveloSession> read(TarveloSession::load(file));
    checkEqual(indentedJson(session), indentedJson(read.data()),
               "a finished session is on disk as recorded");
}

void checkSession(const TarveloSession *session)
{
    if (!session)
        return;
    const QList<SessionStage *> stages = session->stages();
    for (const SessionStage *stage : stages) {
        for (const SessionStep *step : stage->steps()) {
            check(step->s >= 0 && step->s <= TarveloCommon::StimulusCount,
                  "a recorded stimulus is 0 to 18");
            check(step->b >= 0 && step->b <= TarveloCommon::NoReportedButton,
                  "a recorded control is a button or 10");
            check(step->b2 == requiredButton(step->s), "the required button comes from s");
            check(step->r >= 0, "a recorded reaction time is never negative");
        }
        check(stage->correctCount() + stage->lateCount() + stage->errorCount()
                      + stage->missedCount()
                  == stage->steps().size(),
              "every step is classed once");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    createApplication(argc, argv);
    quietDebugOutput();
    static const TestDataFolder data(temporaryBase());
    const QString guid = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
    data.addSubject(QStringLiteral("Иванов"), guid);
    // The search looks only for the highest port number and is stopped at once: the fuzzer
    // speaks for the box.
    if (!data.isValid()
        || !data.writeSettings("<AutoSearch>false</AutoSearch><ComPort>99</ComPort><LastUserGuid>"
                               + guid.toUtf8() + "</LastUserGuid>"))
        std::abort();

    model = new TarveloModel;
    if (!model->currentUser())
        std::abort();
    model->device()->setSearchEnabled(false);
    QObject::connect(model, &TarveloModel::sessionStarted, &releaseReplacedSession);
    QObject::connect(model, &TarveloModel::sessionFinished, &checkWrittenSession);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Every input starts alike, in a run that has just begun: a session kept from the inputs
    // before would make a finding depend on them, and would grow without end.
    model->device()->receive(QByteArrayLiteral("{scriptStarted=}"));
    const QByteArray stream = bytes(data, size);
    Cuts cuts(data, size);
    for (int from = 0; from < stream.size();) {
        const int length = cuts.next();
        model->device()->receive(stream.mid(from, length));
        if (cuts.lastMarked())
            model->abortSession();
        from += length;
    }
    // Closes a half message, so that the next input starts outside any frame.
    model->device()->receive(QByteArrayLiteral("}"));
    checkSession(model->session());
    check(model->sessionRunning() == (model->session() && !model->session()->finished()),
          "a session runs exactly while it isn't finished");
    return 0;
}
