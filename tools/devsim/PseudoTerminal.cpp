#include "PseudoTerminal.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {
// A box's transmit buffer is small; anything beyond this while nobody reads is lost.
constexpr int MaxPendingBytes = 64 * 1024;
constexpr int ReadBlock = 4096;
} // namespace

PseudoTerminal::PseudoTerminal(QObject *parent)
    : QObject(parent)
{
}

PseudoTerminal::~PseudoTerminal()
{
    close();
}

bool PseudoTerminal::open()
{
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0)
        return fail("posix_openpt");
    if (::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
        return fail("grantpt/unlockpt");
    const char *name = ::ptsname(m_master);
    if (!name)
        return fail("ptsname");
    m_slavePath = QString::fromLocal8Bit(name);
    m_slave = ::open(name, O_RDWR | O_NOCTTY);
    if (m_slave < 0)
        return fail("open slave");
    // Raw: no echo, no line editing, no translation of line ends; the protocol has none.
    termios settings {};
    if (::tcgetattr(m_slave, &settings) != 0)
        return fail("tcgetattr");
    ::cfmakeraw(&settings);
    if (::tcsetattr(m_slave, TCSANOW, &settings) != 0)
        return fail("tcsetattr");
    ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);

    m_readNotifier = new QSocketNotifier(m_master, QSocketNotifier::Read, this);
    connect(m_readNotifier, &QSocketNotifier::activated, this, &PseudoTerminal::readMaster);
    m_writeNotifier = new QSocketNotifier(m_master, QSocketNotifier::Write, this);
    m_writeNotifier->setEnabled(false);
    connect(m_writeNotifier, &QSocketNotifier::activated, this, &PseudoTerminal::writePending);
    return true;
}

bool PseudoTerminal::fail(const char *what)
{
    m_error = QStringLiteral("%1: %2").arg(QLatin1String(what),
                                           QString::fromLocal8Bit(std::strerror(errno)));
    close();
    return false;
}

void PseudoTerminal::write(const QByteArray &bytes)
{
    if (!isOpen())
        return;
    if (m_pending.size() + bytes.size() > MaxPendingBytes)
        return;
    m_pending += bytes;
    writePending();
}

void PseudoTerminal::writePending()
{
    while (!m_pending.isEmpty()) {
        const ssize_t written = ::write(m_master, m_pending.constData(), size_t(m_pending.size()));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            // EAGAIN: the program's input queue is full; wait for room.
            m_writeNotifier->setEnabled(errno == EAGAIN || errno == EWOULDBLOCK);
            if (!m_writeNotifier->isEnabled())
                m_pending.clear();
            return;
        }
        m_pending.remove(0, int(written));
    }
    m_writeNotifier->setEnabled(false);
    emit drained();
}

void PseudoTerminal::readMaster()
{
    QByteArray bytes;
    char block[ReadBlock];
    for (;;) {
        const ssize_t count = ::read(m_master, block, sizeof block);
        if (count > 0) {
            bytes.append(block, int(count));
            continue;
        }
        if (count < 0 && errno == EINTR)
            continue;
        // Anything but "nothing more for now" would fire the notifier for ever.
        if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK))
            m_readNotifier->setEnabled(false);
        break;
    }
    if (!bytes.isEmpty())
        emit received(bytes);
}

void PseudoTerminal::close()
{
    // Later, not now: close() may run inside a notifier's own signal.
    for (QSocketNotifier *notifier : {m_readNotifier, m_writeNotifier}) {
        if (notifier) {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    }
    m_readNotifier = nullptr;
    m_writeNotifier = nullptr;
    m_pending.clear();
    if (m_slave >= 0)
        ::close(m_slave);
    m_slave = -1;
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}
