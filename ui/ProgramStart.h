#pragma once

#include <memory>

class MainWindow;
class QApplication;

// The start of the program once the application object exists: the splash with the version
// drawn on it, the language, fonts and style sheet, and the main window, shown. The splash is
// gone by the time this returns.
namespace ProgramStart {

std::unique_ptr<MainWindow> showMainWindow(QApplication &app);

} // namespace ProgramStart
