#include "XLSXHelper.h"

#include "FileUtilities.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <memory>
#include <xlsxwriter.h>

namespace {
using WorkbookPointer = std::unique_ptr<lxw_workbook, decltype(&lxw_workbook_free)>;

// Excel's own width of an unsized column, and its largest.
constexpr double DefaultColumnWidth = 8.43;
constexpr double MaxColumnWidth = 255;

bool isNumber(const QVariant &cell)
{
    switch (cell.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Float:
    case QMetaType::Double:
        // A workbook has no NaN or infinity; those go in as their text.
        return std::isfinite(cell.toDouble());
    default:
        return false;
    }
}

// The characters a cell shows: Excel's General format gives about ten significant digits.
int shownLength(const QVariant &cell)
{
    if (isNumber(cell))
        return QString::number(cell.toDouble(), 'g', 10).length();
    return cell.toString().length();
}

bool validSheetName(lxw_workbook *workbook, const QByteArray &name)
{
    // libxlsxwriter accepts an empty name, which Excel then refuses to open.
    return !name.isEmpty()
        && workbook_validate_sheet_name(workbook, name.constData()) == LXW_NO_ERROR;
}

bool writeCell(lxw_worksheet *sheet, int row, int column, const QVariant &cell)
{
    if (!cell.isValid())
        return true;
    const auto r = lxw_row_t(row);
    const auto c = lxw_col_t(column);
    lxw_error result;
    if (cell.userType() == QMetaType::Bool)
        result = worksheet_write_boolean(sheet, r, c, cell.toBool(), nullptr);
    else if (isNumber(cell))
        result = worksheet_write_number(sheet, r, c, cell.toDouble(), nullptr);
    else
        result = worksheet_write_string(sheet, r, c, cell.toString().toUtf8().constData(), nullptr);
    return result == LXW_NO_ERROR;
}

bool writeSheet(lxw_worksheet *sheet, const XLSXHelper::Rows &rows)
{
    if (rows.size() > LXW_ROW_MAX)
        return false;
    QList<int> widths;
    for (int row = 0; row < rows.size(); ++row) {
        const XLSXHelper::Row &cells = rows.at(row);
        if (cells.size() > LXW_COL_MAX)
            return false;
        while (widths.size() < cells.size())
            widths.append(0);
        for (int column = 0; column < cells.size(); ++column) {
            const QVariant &cell = cells.at(column);
            if (!writeCell(sheet, row, column, cell))
                return false;
            widths[column] = std::max(widths[column], shownLength(cell));
        }
    }
    for (int column = 0; column < widths.size(); ++column) {
        if (widths.at(column) == 0)
            continue;
        // One character of room beside the longest text keeps it clear of the next column.
        const double width =
            std::clamp(widths.at(column) + 1.0, DefaultColumnWidth, MaxColumnWidth);
        worksheet_set_column(sheet, lxw_col_t(column), lxw_col_t(column), width, nullptr);
    }
    return true;
}
} // namespace

bool XLSXHelper::dataToXLSX(const Rows &rows, const QString &filePath, const QString &sheetName,
                            QString *error)
{
    return dataToXLSX(QList<Sheet> {{sheetName, rows}}, filePath, error);
}

bool XLSXHelper::dataToXLSX(const QList<Sheet> &sheets, const QString &filePath, QString *error)
{
    const auto fail = [error](const QString &reason) {
        if (error)
            *error = reason;
        return false;
    };
    if (sheets.isEmpty() || filePath.isEmpty())
        return fail(QStringLiteral("Nothing to write"));
    // The library writes only to a file of its own naming: the workbook is made in a temporary
    // file and then put in place in one step.
    QTemporaryFile made(QDir::temp().filePath(QStringLiteral("XXXXXX.xlsx")));
    if (!made.open())
        return fail(made.errorString());
    made.close();
    const QByteArray madePath = QFile::encodeName(made.fileName());
    WorkbookPointer workbook(workbook_new(madePath.constData()), &lxw_workbook_free);
    if (!workbook)
        return fail(QStringLiteral("The workbook couldn't be made"));

    lxw_worksheet *first = nullptr;
    for (const Sheet &sheet : sheets) {
        const QByteArray name = sheet.first.toUtf8();
        if (!validSheetName(workbook.get(), name))
            return fail(QStringLiteral("Invalid sheet name"));
        lxw_worksheet *worksheet = workbook_add_worksheet(workbook.get(), name.constData());
        if (!worksheet || !writeSheet(worksheet, sheet.second))
            return fail(QStringLiteral("The table doesn't fit a worksheet"));
        if (!first)
            first = worksheet;
    }
    worksheet_activate(first);
    // The file itself is only written here. Closing frees the workbook whatever the result. The
    // library's own word for a failed write is a zip error; the system's reason says more.
    errno = 0;
    const lxw_error closed = workbook_close(workbook.release());
    if (closed != LXW_NO_ERROR)
        return fail(
            QString::fromLocal8Bit(errno != 0 ? std::strerror(errno) : lxw_strerror(closed)));
    if (!made.open())
        return fail(made.errorString());
    return FileUtilities::writeAtomically(filePath, made.readAll(), error);
}

bool XLSXHelper::dataToCSV(const Rows &rows, const QString &filePath, const QString &sheetName,
                           const QString &separator, const QString &lineEnd, QString *error)
{
    return dataToCSV(QList<Sheet> {{sheetName, rows}}, filePath, separator, lineEnd, error);
}

bool XLSXHelper::dataToCSV(const QList<Sheet> &sheets, const QString &filePath,
                           const QString &separator, const QString &lineEnd, QString *error)
{
    // The text is encoded here rather than through the process' locale codec, which stays as
    // the system set it.
    QString text;
    for (const Sheet &sheet : sheets) {
        text += sheet.first + lineEnd;
        for (const Row &row : sheet.second) {
            for (const QVariant &cell : row)
                text += cell.toString() + separator;
            text += lineEnd;
        }
        text += lineEnd + lineEnd;
    }
    return FileUtilities::writeAtomically(filePath,
                                          QByteArrayLiteral("\xEF\xBB\xBF") + text.toUtf8(), error);
}
