#pragma once

#include "foundation/ConnectionHelper.h"

#include <QList>
#include <QMap>
#include <QWidget>

class QColor;
class QPushButton;
class TarveloDevice;

// Tab 3: a live picture of the front of the box. A click on a lamp or a tone button makes the
// box show that stimulus; lamps and controls follow the box's state reports, which come while
// this page is showing. Without a link the whole page is grey.
class PageDevice : public QWidget
{
    Q_OBJECT
public:
    explicit PageDevice(TarveloDevice *device, QWidget *parent = nullptr);

private:
    QPushButton *makeLamp(int stimulus, const QColor &colour);
    QWidget *makeFramedLamp(int stimulus);
    QPushButton *makeButton(int button, const QColor &colour, bool wide);
    QPushButton *makeTone(int stimulus);
    QPushButton *makePedal(int button, const QString &side);
    void showLamps(const QList<bool> &leds);
    void showButton(int button, bool on);

    TarveloDevice *m_device;
    ConnectionHelper m_connections;
    // Index = the lamp's Stimulus code.
    QList<QPushButton *> m_lamps;
    // Key = Button code; the nine controls the state report tells about.
    QMap<int, QPushButton *> m_buttons;
};
