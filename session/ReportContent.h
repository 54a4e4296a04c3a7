#pragma once

#include <QStringList>
#include <QVector>

class SessionSummary;
class TarveloSession;

// The report of a session cell by cell, as shown: the texts of the stage table, its Σ and
// statistic rows and the required/actual matrix. The report HTML is made of it, and the live
// view paints it, comparing it with what it shows so that only changed cells are drawn again.
struct ReportContent
{
    struct StageRow
    {
        QStringList cells;     // the eleven cells; the last is the transfer's shown text
        QString transferClass; // the colour class of that text, empty for none
        bool operator==(const StageRow &other) const
        {
            return cells == other.cells && transferClass == other.transferClass;
        }
        bool operator!=(const StageRow &other) const { return !(*this == other); }
    };
    // A transfer word of the box as a cell shows it.
    struct Transfer
    {
        QString text;
        QString cssClass;
    };

    QVector<StageRow> stages;
    QStringList sums;                // Σ of the columns Reactions to Missed
    QVector<QStringList> statistics; // the M, D and σ rows, six cells each
    QStringList requiredCounts;      // one per shown button
    QVector<QStringList> matrix;     // required control by row, control used by column
    bool finished = false;

    ReportContent(const TarveloSession &session, const SessionSummary &summary);
    ReportContent() = default;

    static Transfer transfer(const QString &action);
};
