#include "ScriptUploader.h"

#include "DeviceProtocol.h"

#include <QDebug>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

using namespace DeviceProtocol;

ScriptUploader::ScriptUploader(Send send, QObject *parent)
    : QObject(parent)
    , m_send(std::move(send))
{
}

void ScriptUploader::upload(const TarveloScript &script, int saveSlot, bool start)
{
    if (m_uploading) {
        qDebug() << "Tarvelo upload refused: another upload is under way";
        return;
    }
    m_uploading = true;
    m_counter = 1;
    m_total = uploadTotal(script);
    const QVector<UploadCommand> commands = uploadCommands(script, saveSlot);
    for (const UploadCommand &command : commands) {
        if (!m_send(command.text, command.delayMs)) {
            qDebug() << "Tarvelo upload stopped: not sent" << command.text;
            m_uploading = false;
            emit progress(-1);
            emit failed();
            return;
        }
        tick();
    }
    if (start) {
        tick();
        QTimer::singleShot(StartScriptDelayMs, this, [this] { m_send(StartScript, 0); });
    }
    m_uploading = false;
}

void ScriptUploader::tick()
{
    ++m_counter;
    emit progress(m_counter < m_total ? m_counter * 100 / m_total : -1);
    QEventLoop loop;
    loop.processEvents();
    QThread::msleep(UploadDelayMs);
}
