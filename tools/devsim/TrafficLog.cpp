#include "TrafficLog.h"

bool TrafficLog::open(const QString &path)
{
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void TrafficLog::write(char direction, const QString &text)
{
    if (!m_file.isOpen())
        return;
    QByteArray line = text.toUtf8();
    line.replace('\r', "\\r").replace('\n', "\\n");
    m_file.write(QByteArray(1, direction) + ' ' + line + '\n');
    m_file.flush();
}
