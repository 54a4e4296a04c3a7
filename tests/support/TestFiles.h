#pragma once

#include <QByteArray>

#include <sys/resource.h>

// Plain file access for tests, on purpose without the program's own file helpers, so that what
// a test reads back or plants is independent of the code under test.
namespace TestFiles {

// The whole file, or nothing if it can't be opened.
QByteArray read(const QString &path);
// False if the file can't be written in full.
bool write(const QString &path, const QByteArray &bytes);

// A file of tests/data.
QString dataPath(const QString &name);
// Compares bytes with the golden file tests/data/<name>. On a difference the actual bytes go to
// "golden-actual/<name>" beside the test program for a diff; with TARVELO_UPDATE_GOLDEN set in
// the environment they replace the golden file instead.
bool matchesGolden(const QString &name, const QByteArray &actual);

// Adds the rows of the table tests/data/<name> to the running _data function. Its first line
// names the columns and their types (text, bytes, int, bool, ints, texts), as in
// "line:text | steps:int"; every further line is a row: its name, then its columns, all parted
// by " | ". A column may hold C escapes (\n, \r, \t, \\, \xHH); the lists ints and texts are
// parted by " , ". Blank lines and lines starting with "#" are left out.
void addRows(const QString &name);

// While it lives, every write of the process stops at this many bytes per file, as on a full
// disk: the write fails instead of the process being killed.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_original {};
    void (*m_oldHandler)(int) = nullptr;
};

} // namespace TestFiles
