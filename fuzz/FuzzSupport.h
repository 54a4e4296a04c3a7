#pragma once

// Small pieces that the fuzz targets share.

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace FuzzSupport {

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

// UTF-8 with its length, so that a NUL byte is text like any other.
inline QString text(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
}

// A broken property is a finding like a crash: libFuzzer keeps the input that caused it.
inline void check(bool holds, const char *property)
{
    if (holds)
        return;
    std::fprintf(stderr, "Property violated: %s\n", property);
    std::abort();
}

// The same for two texts that must be equal; both are shown, so that the finding explains
// itself.
inline void checkEqual(const QString &first, const QString &second, const char *property)
{
    if (first == second)
        return;
    std::fprintf(stderr, "First:\n%s\nSecond:\n%s\n", qPrintable(first), qPrintable(second));
    check(false, property);
}

// The readers log through qDebug; millions of lines would slow the runs down and bury the
// fuzzer's own report. A warning or worse still shows.
inline void quietDebugOutput()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type != QtDebugMsg && type != QtInfoMsg)
            std::fprintf(stderr, "%s\n", qPrintable(message));
    });
}

// An application object for the targets that need an event dispatcher or the standard paths.
// Created once and kept to the end of the process.
inline void createApplication(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    Q_UNUSED(application)
}

// The lengths of the chunks into which a stream is cut, taken from the input itself so that the
// fuzzer steers the cuts: byte i of the input gives the length of chunk i, from 1 to 16.
class Cuts
{
public:
    Cuts(const uint8_t *data, size_t size)
        : m_data(data)
        , m_size(size)
    {
    }
    int next()
    {
        if (m_size == 0)
            return 1;
        const int length = 1 + (m_data[m_index % m_size] & 0x0f);
        ++m_index;
        return length;
    }
    // True when the byte that gave the last length was 0xff, which valid UTF-8 never holds:
    // a mark that the fuzzer can set and that a captured stream doesn't set by chance.
    bool lastMarked() const
    {
        return m_size > 0 && m_index > 0 && m_data[(m_index - 1) % m_size] == 0xff;
    }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_index = 0;
};

} // namespace FuzzSupport
