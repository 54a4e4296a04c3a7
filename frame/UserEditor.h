#pragma once

#include <QWidget>

class PropertyListControl;
class TarveloUser;

// The window that creates or changes a subject. It edits a copy of its own through the
// generated form and leaves what follows to its caller: accept, cancel and removeUser are
// emitted before the window closes, so the caller reads user() in its slot. The window and the
// copy go when it closes.
class UserEditor : public QWidget
{
    Q_OBJECT
public:
    // A null source makes a new subject, with its GUID from the start.
    explicit UserEditor(const TarveloUser *source, QWidget *parent = nullptr);

    TarveloUser *user() const { return m_user; }
    PropertyListControl *form() const { return m_form; }

signals:
    void accept();
    void cancel();
    void removeUser();

private:
    void confirmRemoval();

    TarveloUser *m_user;
    PropertyListControl *m_form = nullptr;
};
