#include "WriteFailures.h"

#include <QDebug>

WriteFailures *WriteFailures::instance()
{
    static WriteFailures channel;
    return &channel;
}

void WriteFailures::report(const QString &path, const QString &reason)
{
    qWarning() << "Not written:" << path << reason;
    emit instance()->failed(path, reason);
}
