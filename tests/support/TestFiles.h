#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

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

} // namespace TestFiles
