#include "EmulatorProcess.h"

#include "device/PortCatalog.h"

namespace {
constexpr int StartTimeoutMs = 10000;
} // namespace

EmulatorProcess::~EmulatorProcess()
{
    kill();
}

void EmulatorProcess::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

bool EmulatorProcess::start(const QStringList &arguments)
{
    if (!m_dir.isValid())
        return false;
    m_process.setProgram(QStringLiteral(TARVELO_DEVSIM));
    m_process.setArguments(
        QStringList {QStringLiteral("--log"), m_dir.filePath(QStringLiteral("traffic.log"))}
        + arguments);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start();
    if (!m_process.waitForStarted(StartTimeoutMs))
        return false;
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(StartTimeoutMs))
            return false;
    }
    m_path = QString::fromLocal8Bit(m_process.readLine()).trimmed();
    return !m_path.isEmpty();
}

QStringList EmulatorProcess::log() const
{
    QFile file(m_dir.filePath(QStringLiteral("traffic.log")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList EmulatorProcess::linesMarked(char mark) const
{
    QStringList lines;
    const QStringList all = log();
    for (const QString &line : all) {
        if (line.startsWith(QLatin1Char(mark)))
            lines << line.mid(2);
    }
    return lines;
}

void setExtraPorts(const QStringList &paths)
{
    qputenv(PortCatalog::ExtraPortsVariable, QFile::encodeName(paths.join(QDir::listSeparator())));
}
