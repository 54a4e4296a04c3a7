#include "PortCatalog.h"

#include <QDir>
#include <QSerialPortInfo>
#include <QtGlobal>

const char *const PortCatalog::ExtraPortsVariable = "TARVELO_EXTRA_PORTS";

QList<PortCandidate> PortCatalog::candidates()
{
    QList<PortCandidate> list;
    QStringList locations;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : ports) {
        list.append(
            {info.portName(), info.description(), info.manufacturer(), info.serialNumber()});
        locations << info.systemLocation();
    }
    const QStringList extra = extraPorts();
    for (const QString &path : extra) {
        if (!locations.contains(path))
            list.append({path, QString(), QString(), QString()});
        locations << path;
    }
    return list;
}

QStringList PortCatalog::extraPorts()
{
    const QString value = qEnvironmentVariable(ExtraPortsVariable);
    return value.split(QDir::listSeparator(), Qt::SkipEmptyParts);
}

bool PortCatalog::isExcluded(const QString &description)
{
    return description.contains(QStringLiteral("Последовательный порт"))
        || description.contains(QLatin1String("Bluetooth"));
}

int PortCatalog::portNumber(const QString &name)
{
    bool ok = false;
    const int windowsNumber = QString(name).remove(QLatin1String("COM")).toInt(&ok, 10);
    if (ok)
        return windowsNumber;
    int digits = 0;
    auto isAsciiDigit = [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    };
    while (digits < name.size() && isAsciiDigit(name.at(name.size() - 1 - digits)))
        ++digits;
    // A run of digits too long for an int counts as no number.
    return name.right(digits).toInt();
}

QString PortCatalog::systemLocation(const QString &name)
{
#ifdef Q_OS_WIN
    return name;
#else
    return name.startsWith(QLatin1Char('/')) ? name : QStringLiteral("/dev/") + name;
#endif
}
