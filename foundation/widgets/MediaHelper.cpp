#include "MediaHelper.h"

#include <QHash>

QIcon MediaHelper::icon(const QString &path)
{
    static QHash<QString, QIcon> cache;
    auto it = cache.find(path);
    if (it == cache.end())
        it = cache.insert(path, QIcon(path));
    return *it;
}
