#pragma once

#include <QObject>
#include <QString>

// The one channel on which a failed write of an operator's file is announced, whichever part of
// the program made it: the window shows each announcement, so that no failed write goes
// unnoticed. Writers announce the first failure of a run of failures, not every repeat.
class WriteFailures : public QObject
{
    Q_OBJECT
public:
    static WriteFailures *instance();
    // path couldn't be written; reason is the system's word for why.
    static void report(const QString &path, const QString &reason);

signals:
    void failed(const QString &path, const QString &reason);
};
