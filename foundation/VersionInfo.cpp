#include "VersionInfo.h"

#include <QJsonDocument>
#include <QJsonObject>

VersionInfo VersionInfo::parse(const QByteArray &json)
{
    const QJsonObject answer = QJsonDocument::fromJson(json).object();
    VersionInfo info;
    info.valid = answer.value(QLatin1String("valid")).toBool(false);
    info.version = answer.value(QLatin1String("version")).toString();
    info.date = answer.value(QLatin1String("date")).toString();
    info.critical = answer.value(QLatin1String("critical")).toBool(false);
    info.link = answer.value(QLatin1String("link")).toString();
    info.changelog = answer.value(QLatin1String("changelog")).toString();
    info.info = answer.value(QLatin1String("info")).toString();
    return info;
}
