#pragma once

#include <QIcon>

class QPushButton;

// How a stimulus shows in the interface; TarveloCommon itself stays free of widgets.

// The stimulus's picture, loaded once per value; an empty icon for a value without one.
QIcon stimulusIcon(int stimulus);

// A new, unparented, flat-looking button with the stimulus's picture and translated name.
QPushButton *stimulusButton(int stimulus);

// The stimulus's translated name (the enumeration key in the context "Stimulus").
QString stimulusName(int stimulus);
