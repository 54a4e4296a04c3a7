#include "DeferredStart.h"

#include <QEvent>
#include <QTimer>

namespace {
// Without a paint, such as on a screen that never shows the window, the held work still runs.
constexpr int LongestHoldMs = 1000;
} // namespace

bool DeferredStart::s_held = false;
std::vector<DeferredStart::Held> DeferredStart::s_work;

DeferredStart::DeferredStart(QObject *window)
    : QObject(window)
{
    window->installEventFilter(this);
    QTimer::singleShot(LongestHoldMs, this, &DeferredStart::letGo);
}

void DeferredStart::call(QObject *context, std::function<void()> work)
{
    if (s_held)
        s_work.push_back({context, std::move(work)});
    else
        QTimer::singleShot(0, context, std::move(work));
}

void DeferredStart::hold()
{
    s_held = true;
}

void DeferredStart::releaseAfterFirstPaint(QObject *window)
{
    new DeferredStart(window);
}

void DeferredStart::release()
{
    s_held = false;
    std::vector<Held> work;
    work.swap(s_work);
    for (Held &held : work) {
        if (held.context)
            QTimer::singleShot(0, held.context.data(), std::move(held.work));
    }
}

bool DeferredStart::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        // After the whole repaint, which this event only begins.
        QTimer::singleShot(0, this, &DeferredStart::letGo);
    }
    return false;
}

void DeferredStart::letGo()
{
    release();
    deleteLater();
}
