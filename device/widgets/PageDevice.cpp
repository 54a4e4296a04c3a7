#include "PageDevice.h"

PageDevice::PageDevice(TarveloDevice *device, QWidget *parent)
    : QWidget(parent)
{
    Q_UNUSED(device) // the page's content arrives with its own work
}
