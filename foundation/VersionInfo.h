#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

// The version service's answer: whether a newer version is on offer, and which. Anything that
// isn't a JSON object, an empty answer of a failed request included, reads as nothing on offer.
struct VersionInfo
{
    bool valid = false;
    QString version;
    QString date;
    bool critical = false; // kept; nothing here acts on it
    QString link;
    QString changelog;
    QString info;

    static VersionInfo parse(const QByteArray &json);
};
Q_DECLARE_METATYPE(VersionInfo)
