#pragma once

#include <QIcon>
#include <QString>

class MediaHelper
{
public:
    // Icons are loaded once per path and shared; a missing path stays a null icon.
    static QIcon icon(const QString &path);
};
