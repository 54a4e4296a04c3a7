#pragma once

#include "foundation/ConnectionHelper.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class TarveloDevice;

// The strip under the pages: whether the box is connected, with its serial number, version and
// port, the progress of a script upload, and a notice of what has just happened (an upload cut
// off, a file exported, with a link that shows that file in its folder). While no box is
// connected it also says which port refused this user and how to get the right to it.
class TarveloStatusBar : public QWidget
{
    Q_OBJECT
public:
    explicit TarveloStatusBar(TarveloDevice *device, QWidget *parent = nullptr);

    // The text shown for the device's present state.
    static QString statusText(const TarveloDevice *device);

    QLabel *notice() const { return m_notice; }
    // Names the exported file, with a link to its folder.
    void showExported(const QString &filePath);

signals:
    void tarveloClicked();

private:
    // Which ports refuse this user and what would help; empty when none does.
    static QString refusalText(const TarveloDevice *device);
    void updateStatus();
    void showProgress(int progress);
    void showNotice(const QString &text, const QString &file = QString());

    TarveloDevice *m_device;
    ConnectionHelper m_connections;
    QPushButton *m_button = nullptr;
    QLabel *m_refusal = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QLabel *m_notice = nullptr;
    QString m_noticeFile;
};
