#pragma once

#include <QString>

// Application-wide helpers that need no widgets. The message boxes of the same namespace
// live in foundation/widgets/AppDialogs.h, so that the core library stays free of QtWidgets.
namespace AppHelper {

// The application version cut to three parts (a.b.c), or to two (a.b) when threeParts is false.
QString appVersion(bool threeParts);

// The platform as the version service hears of it: "windows", "debian", "osx" and the like.
QString OS();

// Shows the file selected in the system's file manager (or opens the folder itself); false when
// no program took it.
bool showInFolder(const QString &path);

// The first compiled-in resource whose path ends in name, as a "qrc:" path; null if none.
QString findInResources(const QString &name);

} // namespace AppHelper
