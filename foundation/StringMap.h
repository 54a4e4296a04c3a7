#pragma once

#include <QMap>
#include <QString>

// A map of texts that a settings object stores as child elements, one per key.
using StringMap = QMap<QString, QString>;

// Registers the map under the name "StringMap", the name a property declared with it carries,
// so that the property can be read and written by name. Safe to call any number of times.
int registerStringMapType();
