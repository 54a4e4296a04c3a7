#include "FirmwareFlasher.h"

#include "FirmwarePackage.h"
#include "PortCatalog.h"

#include <QCoreApplication>
#include <QDebug>
#include <QProcess>
#include <QRegularExpression>

using namespace FirmwarePackage;

namespace {
QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}
} // namespace

FirmwareFlasher::FirmwareFlasher(int type, const QString &tool, const QMap<QString, QString> &files,
                                 QObject *parent)
    : QObject(parent)
    , m_type(type)
    , m_program(program(tool, files))
    , m_files(files)
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(SilenceMs);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        note(tr("The tool said nothing for %1 s and was stopped.").arg(SilenceMs / 1000));
        m_process->kill();
    });
}

QStringList FirmwareFlasher::arguments(int type, const QMap<QString, QString> &files,
                                       const QString &port)
{
    if (type == AtMega2560) {
        // The image path is quoted too: a data folder with a blank in its path would otherwise
        // cut the argument in two.
        return {
            quoted(QStringLiteral("-C") + files.value(Role::Conf)),
            QStringLiteral("-v"),
            QStringLiteral("-V"),
            QStringLiteral("-patmega2560"),
            QStringLiteral("-cwiring"),
            quoted(QStringLiteral("-P") + port),
            QStringLiteral("-b115200"),
            QStringLiteral("-D"),
            quoted(QStringLiteral("-Uflash:w:") + files.value(Role::Hex) + QStringLiteral(":i"))};
    }
    return {QStringLiteral("--chip"),       QStringLiteral("esp32"),
            QStringLiteral("--port"),       quoted(port),
            QStringLiteral("--baud"),       QStringLiteral("1500000"),
            QStringLiteral("--before"),     QStringLiteral("default_reset"),
            QStringLiteral("--after"),      QStringLiteral("hard_reset"),
            QStringLiteral("write_flash"),  QStringLiteral("-z"),
            QStringLiteral("--flash_mode"), QStringLiteral("dio"),
            QStringLiteral("--flash_freq"), QStringLiteral("80m"),
            QStringLiteral("--flash_size"), QStringLiteral("4MB"),
            QStringLiteral("0x1000"),       quoted(files.value(Role::Bootloader)),
            QStringLiteral("0x8000"),       quoted(files.value(Role::Partitions)),
            QStringLiteral("0xe000"),       quoted(files.value(Role::BootApp)),
            QStringLiteral("0x10000"),      quoted(files.value(Role::Ino))};
}

QString FirmwareFlasher::program(const QString &tool, const QMap<QString, QString> &files)
{
    if (!tool.startsWith(SelfPrefix))
        return tool;
    return files.value(tool.mid(SelfPrefix.size()));
}

QString FirmwareFlasher::commandLine(const QString &program, const QStringList &arguments)
{
    return quoted(program) + QLatin1Char(' ') + arguments.join(QLatin1Char(' '));
}

bool FirmwareFlasher::reportsErrors(const QString &output)
{
    static const QRegularExpression words(QStringLiteral("invalid|can't|failed"),
                                          QRegularExpression::CaseInsensitiveOption);
    return output.contains(words);
}

void FirmwareFlasher::flash(const QStringList &ports)
{
    if (m_process)
        return;
    m_ports = ports;
    runNext();
}

void FirmwareFlasher::runNext()
{
    if (m_ports.isEmpty()) {
        emit finished();
        return;
    }
    m_port = m_ports.takeFirst();
    m_output.clear();
    const QStringList args = arguments(m_type, m_files, PortCatalog::systemLocation(m_port));
    qDebug() << "ARGS" << args;
    qDebug() << QCoreApplication::applicationDirPath();

    m_process = new QProcess(this);
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    connect(m_process, &QProcess::readyRead, this, &FirmwareFlasher::readOutput);
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this](int code, QProcess::ExitStatus status) {
                endPort(status == QProcess::NormalExit && code == 0);
            });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        // A tool that never started prints nothing; that must not pass for success.
        if (error != QProcess::FailedToStart)
            return;
        note(m_process->errorString());
        endPort(false);
    });
    // Split as one command line would be, quotes and all.
    const QStringList parts = QProcess::splitCommand(commandLine(m_program, args));
    m_silence.start();
    // A start that fails at once ends the port inside start(); the object lives on till later.
    QProcess *process = m_process;
    process->start(parts.constFirst(), parts.mid(1), QIODevice::ReadWrite);
    qDebug() << "ARGS2" << process->arguments();
}

void FirmwareFlasher::readOutput()
{
    const QString piece = QString::fromLocal8Bit(m_process->readAll());
    if (piece.isEmpty())
        return;
    qDebug() << "P" << piece;
    m_output += piece;
    emit output(piece);
    m_silence.start();
}

void FirmwareFlasher::note(const QString &text)
{
    const QString line = text + QLatin1Char('\n');
    m_output += line;
    emit output(line);
}

void FirmwareFlasher::endPort(bool cleanEnd)
{
    m_silence.stop();
    readOutput();
    m_process->disconnect(this);
    m_process->deleteLater();
    m_process = nullptr;
    qDebug() << "END";
    emit portDone(m_port, !cleanEnd || reportsErrors(m_output));
    runNext();
}
