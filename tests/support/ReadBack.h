#pragma once

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// Exported files as independent readers see them.

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

// The text of a PDF as pdftotext (poppler-utils) reads it, its blanks and line ends made single
// blanks.
inline QString pdfText(const QString &path)
{
    QProcess tool;
    tool.start(QStringLiteral("pdftotext"),
               {QStringLiteral("-enc"), QStringLiteral("UTF-8"), path, QStringLiteral("-")});
    tool.waitForFinished(60000);
    return QString::fromUtf8(tool.readAllStandardOutput()).simplified();
}
