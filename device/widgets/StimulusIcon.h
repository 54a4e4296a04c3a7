#pragma once

#include <QIcon>

// The picture of a stimulus, as the stage editor and the device page show it; a value that is
// no stimulus gets an empty icon.
QIcon stimulusIcon(int stimulus);
