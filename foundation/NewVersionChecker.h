#pragma once

#include <QObject>
#include <QString>

// Turns the version service's answers into what a button or a menu entry shows: a text, a tool
// tip and whether to show at all. Starts the checking, every ten minutes, if nobody has yet.
class NewVersionChecker : public QObject
{
    Q_OBJECT
public:
    // preliminaryText goes in front of the version; empty, the application's name does.
    explicit NewVersionChecker(const QString &preliminaryText, QObject *parent = nullptr);

    void setPreliminaryText(const QString &text) { m_preliminaryText = text; }
    QString link() const { return m_link; }
    // Opens the download link in the browser; nothing without one.
    void action() const;

signals:
    void onSetText(const QString &text);
    void onSetTooltip(const QString &text);
    void onSetVisible(bool visible);

private:
    void update();

    QString m_preliminaryText;
    QString m_link;
};
