#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <csignal>
#include <sys/resource.h>

// Plain file access for tests, on purpose without the program's own file helpers, so that what
// a test reads back or plants is independent of the code under test.
namespace TestFiles {

// The whole file, or nothing if it can't be opened.
inline QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// False if the file can't be written in full.
inline bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// While it lives, files of this process can't grow beyond bytes, as on a full disk; SIGXFSZ is
// ignored, so that a write fails rather than ending the process.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit {bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    rlimit m_old {};
};

} // namespace TestFiles
