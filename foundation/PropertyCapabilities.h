#pragma once

#include <QJsonObject>
#include <QString>

class AbstractMetaDescription;

// The facts of a property for consumers outside the program: what it is, its value, limits
// and texts, each key present only where it says something.
namespace PropertyCapabilities {

QJsonObject of(const AbstractMetaDescription *description);
// ["name"="...", "type"="...", "default"="...", "value"="..."], with the limits for numbers.
QString text(const AbstractMetaDescription *description);

} // namespace PropertyCapabilities
