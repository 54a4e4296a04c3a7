#pragma once

class QApplication;

// The program's look: the compiled-in fonts and the application style sheet. The program and
// the screenshot tool apply it the same way, before their first window is built.
namespace AppStyle {

void apply(QApplication &app);

} // namespace AppStyle
