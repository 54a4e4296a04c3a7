#pragma once

class QApplication;

// The program's look: the compiled-in fonts and the application style sheet, given once. The
// main window applies it when its pages are built.
namespace AppStyle {

void apply(QApplication &app);

} // namespace AppStyle
