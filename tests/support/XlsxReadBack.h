#pragma once

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// An XLSX workbook as an independent reader (openpyxl, through read_xlsx.py) sees it; empty
// when the reader fails. The test target gets the interpreter and the script from the build.
inline QJsonObject readXlsxBack(const QString &path)
{
    QProcess reader;
    reader.start(QStringLiteral(TARVELO_PYTHON3), {QStringLiteral(TARVELO_READ_XLSX), path});
    if (!reader.waitForFinished(60000) || reader.exitCode() != 0) {
        qWarning() << reader.readAllStandardError();
        return {};
    }
    return QJsonDocument::fromJson(reader.readAllStandardOutput()).object();
}
