#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <vector>

// Work that the first sight of the window doesn't need, such as the port search and the version
// query, is held back while the start holds it, and runs once the window has been painted.
// Nothing holds it back unless the start does, so that a device or a checker made on its own
// begins on the next pass of the event loop, as it always did.
class DeferredStart : public QObject
{
    Q_OBJECT
public:
    // Runs work on a later pass of the event loop, unless context is gone by then.
    static void call(QObject *context, std::function<void()> work);
    static void hold();
    // Lets the held work go after the first paint of window, or after a second at the latest.
    static void releaseAfterFirstPaint(QObject *window);
    static void release();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DeferredStart(QObject *window);
    void letGo();

    struct Held
    {
        QPointer<QObject> context;
        std::function<void()> work;
    };
    static bool s_held;
    static std::vector<Held> s_work;
};
