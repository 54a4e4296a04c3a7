#pragma once

#include <QWidget>

class TarveloDevice;

// Tab 3: a live picture of the front of the box.
class PageDevice : public QWidget
{
    Q_OBJECT
public:
    explicit PageDevice(TarveloDevice *device, QWidget *parent = nullptr);
};
