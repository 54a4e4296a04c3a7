#pragma once

#include <memory>

class MainWindow;

// The start of the program once the application object exists: the splash with the version
// drawn on it, the language, and the main window, shown in the program's look. The splash is
// gone by the time this returns; the work the first sight of the window doesn't need waits
// until the window has been painted.
namespace ProgramStart {

std::unique_ptr<MainWindow> showMainWindow();

} // namespace ProgramStart
