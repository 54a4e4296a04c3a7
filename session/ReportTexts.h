#pragma once

#include <QString>
#include <QStringList>

// The translated texts of the session report and its export, made once on first use and kept
// for the life of the process, so they keep the language that was active then.
struct ReportTexts
{
    QString matrixHeading;       // over the required/actual matrix
    QString matrixRowLabel;      // the line of required counts
    QString stageWord;           // "Stage" in front of a stage's number
    QString sessionWord;         // the title line
    QString finishLine;          // under a finished session
    QStringList headers;         // the 11 columns of the stage table
    QStringList statisticLabels; // M, D, σ
    QStringList buttonNames;     // indexed by TarveloCommon::Button, BTN_Green to BTN_Pedal_Right
    QStringList fileFilters;     // XLSX, CSV, PDF, for the export dialog

    static const ReportTexts &instance();
};
