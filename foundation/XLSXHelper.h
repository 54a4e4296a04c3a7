#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

// Writes tables of typed cells to an XLSX workbook or a separated text file. Knows nothing of
// what the tables mean. Rows may differ in length; a row with no cells is an empty line. A
// file is replaced only once it is whole, so a failed write leaves an earlier one as it was;
// error, when given, then gets the reason.
class XLSXHelper
{
public:
    using Row = QList<QVariant>;
    using Rows = QList<Row>;
    using Sheet = QPair<QString, Rows>;

    // Ints and doubles become numeric cells, texts string cells, one worksheet per sheet in
    // order, the first one active, columns sized to their contents. False when there is no
    // sheet, a sheet name Excel would refuse (empty, over 31 characters, one of []:*?/\, a
    // quote at either end, a duplicate), a table beyond the sheet's bounds, or a target that
    // can't be written.
    static bool dataToXLSX(const Rows &rows, const QString &filePath, const QString &sheetName,
                           QString *error = nullptr);
    static bool dataToXLSX(const QList<Sheet> &sheets, const QString &filePath,
                           QString *error = nullptr);

    // UTF-8 with a byte order mark. Per sheet: its name and lineEnd, then each row with every
    // cell followed by separator, then lineEnd; two more lineEnds close the sheet. Cells are
    // QVariant::toString, unquoted: a separator inside a text makes a further column.
    static bool dataToCSV(const Rows &rows, const QString &filePath, const QString &sheetName,
                          const QString &separator, const QString &lineEnd,
                          QString *error = nullptr);
    static bool dataToCSV(const QList<Sheet> &sheets, const QString &filePath,
                          const QString &separator, const QString &lineEnd,
                          QString *error = nullptr);
};
