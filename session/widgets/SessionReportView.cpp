#include "SessionReportView.h"

#include "session/ReportTexts.h"
#include "session/SessionReport.h"

#include <QEvent>
#include <QHash>
#include <QPaintEvent>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {
// How rich text sets a third-level heading: 1.2 times the size, bold, 14 px above; the margin
// below the last block of a text is left out.
constexpr qreal HeadingScale = 1.2;
constexpr int HeadingMarginTop = 14;
// The first stage column takes 1 % of the width, the others share what is left.
constexpr qreal NumberColumnShare = 0.01;
constexpr int FooterRows = 4;
constexpr int MatrixHeadingRows = 3;
// Rich text sets a line's baseline a pixel lower than the font's ascent.
constexpr int TextDrop = 1;

// The looks of the report, read from its style block, so that the HTML and this view follow
// the one statement of them.
struct ReportLook
{
    int padding = 0;
    int border = 0;
    QColor borderColour;
    int headingPixelSize = 0;
    QColor headingBackground;
    QHash<QString, QColor> classColours;

    static const ReportLook &instance()
    {
        static const ReportLook look = read(SessionReport::styleBlock());
        return look;
    }

private:
    static QRegularExpressionMatch match(const QString &css, const char *pattern)
    {
        return QRegularExpression(QString::fromLatin1(pattern)).match(css);
    }

    static ReportLook read(const QString &css)
    {
        ReportLook look;
        look.padding = match(css, "padding: (\\d+)px").captured(1).toInt();
        const QRegularExpressionMatch border = match(css, "border: (\\d+)px solid (#\\w+)");
        look.border = border.captured(1).toInt();
        look.borderColour = QColor(border.captured(2));
        const QRegularExpressionMatch heading =
            match(css, "th \\{ font-size: (\\d+)px; background: (#\\w+)");
        look.headingPixelSize = heading.captured(1).toInt();
        look.headingBackground = QColor(heading.captured(2));
        QRegularExpressionMatchIterator classes =
            QRegularExpression(QStringLiteral("\\.(\\w+) \\{ (?:background|color): (#\\w+)"))
                .globalMatch(css);
        while (classes.hasNext()) {
            const QRegularExpressionMatch cssClass = classes.next();
            look.classColours.insert(cssClass.captured(1), QColor(cssClass.captured(2)));
        }
        return look;
    }
};

QColor classColour(const char *cssClass)
{
    return ReportLook::instance().classColours.value(QLatin1String(cssClass));
}

int lineHeight(const QFont &font)
{
    return int(std::ceil(QFontMetricsF(font).height()));
}
} // namespace

QRect SessionReportView::Grid::cell(int row, int column, int rowSpan, int columnSpan) const
{
    return QRect(QPoint(x.at(column), y.at(row)),
                 QPoint(x.at(column + columnSpan) - 1, y.at(row + rowSpan) - 1));
}

QRect SessionReportView::Grid::rows(int first, int last) const
{
    return QRect(QPoint(x.constFirst(), y.at(first)),
                 QPoint(x.constLast() + ReportLook::instance().border, y.at(last + 1)));
}

SessionReportView::SessionReportView(QWidget *parent)
    : QWidget(parent)
{
    measureFonts();
    layoutTables();
}

void SessionReportView::setContent(const ReportContent *content)
{
    const bool wasEmpty = m_empty;
    const ReportContent previous = m_content;
    const Grid stageGrid = m_stageGrid;
    const Grid matrixGrid = m_matrixGrid;
    const int height = m_height;
    m_empty = !content;
    m_content = content ? *content : ReportContent();

    const int stages = m_content.stages.size();
    const int kept = wasEmpty || m_empty ? 0 : std::min(stages, int(previous.stages.size()));
    m_stageWidths.resize(stages);
    QVector<int> changedRows;
    for (int i = 0; i < stages; ++i) {
        if (i >= kept || m_content.stages.at(i) != previous.stages.at(i)) {
            m_stageWidths[i] = stageWidths(i);
            changedRows << i;
        }
    }
    const QRect matrixChange = matrixCellsDiffering(previous);
    layoutTables();
    if (m_height != height)
        updateGeometry();

    if (wasEmpty || m_empty || m_stageGrid.x != stageGrid.x || m_matrixGrid.x != matrixGrid.x) {
        update();
        return;
    }
    QRegion dirty;
    if (stages != previous.stages.size() || m_content.finished != previous.finished) {
        // Everything from the first row added or gone down moves.
        const int from = stageGrid.y.at(kept + 1);
        dirty += QRect(0, from, width(), std::max(height, m_height) - from);
    }
    for (const int row : qAsConst(changedRows))
        dirty += m_stageGrid.rows(row + 1, row + 1);
    if (m_content.sums != previous.sums || m_content.statistics != previous.statistics)
        dirty += m_stageGrid.rows(stages + 1, stages + FooterRows);
    dirty += matrixChange.translated(0, m_matrixGrid.y.constFirst() - matrixGrid.y.constFirst());
    update(dirty);
}

QRect SessionReportView::matrixCellsDiffering(const ReportContent &previous) const
{
    if (previous.matrix.size() != m_content.matrix.size()
        || previous.requiredCounts.size() != m_content.requiredCounts.size())
        return m_matrixGrid.rows(0, m_matrixGrid.y.size() - 2);
    QRect changed;
    for (int j = 0; j < m_content.requiredCounts.size(); ++j) {
        if (m_content.requiredCounts.at(j) != previous.requiredCounts.at(j))
            changed |= m_matrixGrid.cell(2, j + 1).adjusted(0, 0, 1, 1);
    }
    for (int i = 0; i < m_content.matrix.size(); ++i) {
        for (int j = 0; j < m_content.matrix.at(i).size(); ++j) {
            if (m_content.matrix.at(i).at(j) != previous.matrix.at(i).at(j))
                changed |= m_matrixGrid.cell(i + MatrixHeadingRows, j + 1).adjusted(0, 0, 1, 1);
        }
    }
    return changed;
}

SessionReportView::StageWidths SessionReportView::stageWidths(int row) const
{
    const QFontMetricsF metrics(font());
    const QStringList &cells = m_content.stages.at(row).cells;
    StageWidths widths {};
    for (int i = 0; i < StageColumns && i < cells.size(); ++i)
        widths[i] = metrics.horizontalAdvance(cells.at(i));
    return widths;
}

void SessionReportView::measureFonts()
{
    m_headingFont = font();
    m_headingFont.setPixelSize(ReportLook::instance().headingPixelSize);
    m_headingFont.setBold(true);
    m_finishFont = font();
    if (m_finishFont.pixelSize() > 0)
        m_finishFont.setPixelSize(qRound(m_finishFont.pixelSize() * HeadingScale));
    else
        m_finishFont.setPointSizeF(m_finishFont.pointSizeF() * HeadingScale);
    m_finishFont.setBold(true);
    m_lineHeight = lineHeight(font());
    m_headingLineHeight = lineHeight(m_headingFont);
    m_breakHeight = int(std::ceil(QFontMetricsF(font()).lineSpacing()));
    for (int i = 0; i < m_content.stages.size(); ++i)
        m_stageWidths[i] = stageWidths(i);
}

QVector<int> SessionReportView::columnEdges(const QVector<qreal> &contentWidths,
                                            int percentColumn) const
{
    const ReportLook &look = ReportLook::instance();
    const int columns = contentWidths.size();
    const qreal tableWidth = width() * SessionReport::TableWidthPercent / 100;
    const qreal space = tableWidth - look.border - columns * (2 * look.padding + look.border);
    QVector<qreal> widths(columns);
    qreal taken = 0;
    for (int i = 0; i < columns; ++i) {
        widths[i] = contentWidths.at(i);
        if (i == percentColumn)
            widths[i] = std::max(widths.at(i), tableWidth * NumberColumnShare - 2 * look.padding);
        taken += widths.at(i);
    }
    // What is left goes in equal parts to the columns without a width of their own.
    const int sharing = percentColumn < 0 ? columns : columns - 1;
    const qreal share = std::max<qreal>(0, space - taken) / sharing;
    QVector<int> edges {0};
    qreal x = 0;
    for (int i = 0; i < columns; ++i) {
        x += look.border + 2 * look.padding + widths.at(i) + (i == percentColumn ? 0 : share);
        edges << qRound(x);
    }
    return edges;
}

QVector<int> SessionReportView::rowEdges(int top, const QVector<int> &lineHeights) const
{
    const ReportLook &look = ReportLook::instance();
    QVector<int> edges {top};
    for (const int line : lineHeights)
        edges << edges.constLast() + look.border + 2 * look.padding + line;
    return edges;
}

void SessionReportView::layoutTables()
{
    const ReportTexts &texts = ReportTexts::instance();
    const QFontMetricsF metrics(font());
    const QFontMetricsF headingMetrics(m_headingFont);
    const int stages = m_content.stages.size();

    QVector<qreal> stageColumns(StageColumns, 0);
    for (int i = 0; i < StageColumns; ++i)
        stageColumns[i] = headingMetrics.horizontalAdvance(texts.headers.value(i));
    for (const StageWidths &row : qAsConst(m_stageWidths)) {
        for (int i = 0; i < StageColumns; ++i)
            stageColumns[i] = std::max(stageColumns.at(i), row[i]);
    }
    // The Σ and statistic labels span the first two columns and are never the widest.
    for (int i = 0; i < m_content.sums.size(); ++i)
        stageColumns[i + 2] =
            std::max(stageColumns.at(i + 2), metrics.horizontalAdvance(m_content.sums.at(i)));
    for (const QStringList &row : qAsConst(m_content.statistics)) {
        for (int i = 0; i < row.size(); ++i)
            stageColumns[i + 2] =
                std::max(stageColumns.at(i + 2), metrics.horizontalAdvance(row.at(i)));
    }
    m_stageGrid.x = columnEdges(stageColumns, 0);
    m_stageGrid.y = rowEdges(SessionReport::StageTableMarginTop,
                             QVector<int>(1, m_headingLineHeight)
                                 + QVector<int>(stages + FooterRows, m_lineHeight));

    const int shown = m_content.matrix.size();
    QVector<qreal> matrixColumns(shown + 1, 0);
    matrixColumns[0] = headingMetrics.horizontalAdvance(texts.matrixRowLabel);
    for (int i = 0; i < shown; ++i) {
        const qreal name = headingMetrics.horizontalAdvance(texts.buttonNames.value(i));
        matrixColumns[0] = std::max(matrixColumns.at(0), name);
        matrixColumns[i + 1] =
            std::max({matrixColumns.at(i + 1), name,
                      headingMetrics.horizontalAdvance(m_content.requiredCounts.value(i))});
        for (int j = 0; j < shown; ++j)
            matrixColumns[j + 1] = std::max(matrixColumns.at(j + 1),
                                            metrics.horizontalAdvance(m_content.matrix[i][j]));
    }
    m_matrixGrid.x = columnEdges(matrixColumns, -1);
    // The tables are parted by a line break; a table's frame ends a border below its last line.
    const int matrixTop =
        m_stageGrid.y.constLast() + 2 * ReportLook::instance().border + m_breakHeight;
    m_matrixGrid.y =
        rowEdges(matrixTop,
                 QVector<int>(MatrixHeadingRows, m_headingLineHeight)
                     + QVector<int>(shown, std::max(m_lineHeight, m_headingLineHeight)));

    const int matrixBottom = m_matrixGrid.y.constLast() + 2 * ReportLook::instance().border;
    m_finishTop = matrixBottom + m_breakHeight + HeadingMarginTop;
    m_height = m_empty       ? 0
        : m_content.finished ? m_finishTop + lineHeight(m_finishFont)
                             : matrixBottom;
    m_minimumWidth = 0;
    for (const QVector<qreal> *columns : {&stageColumns, &matrixColumns}) {
        qreal least = ReportLook::instance().border;
        for (const qreal column : *columns)
            least += column + 2 * ReportLook::instance().padding + ReportLook::instance().border;
        m_minimumWidth = std::max(m_minimumWidth,
                                  int(std::ceil(least * 100 / SessionReport::TableWidthPercent)));
    }
}

QSize SessionReportView::sizeHint() const
{
    return QSize(m_minimumWidth, m_height);
}

QSize SessionReportView::minimumSizeHint() const
{
    return sizeHint();
}

void SessionReportView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutTables();
}

void SessionReportView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measureFonts();
        layoutTables();
        updateGeometry();
        update();
    }
}

void SessionReportView::paintEvent(QPaintEvent *event)
{
    if (m_empty)
        return;
    QPainter painter(this);
    const QRect exposed = event->rect();
    paintStageTable(painter, exposed);
    if (exposed.intersects(m_matrixGrid.rows(0, m_matrixGrid.y.size() - 2)))
        paintMatrix(painter);
    if (m_content.finished) {
        painter.setFont(m_finishFont);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(
            QPointF(0, m_finishTop + std::ceil(QFontMetricsF(m_finishFont).ascent()) + TextDrop),
            ReportTexts::instance().finishLine);
    }
}

void SessionReportView::paintCell(QPainter &painter, const QRect &cell, const QString &text,
                                  bool heading, Qt::Alignment alignment, const QColor &background,
                                  const QColor &textColour) const
{
    const ReportLook &look = ReportLook::instance();
    const int b = look.border;
    if (background.isValid())
        painter.fillRect(cell.adjusted(b, b, 0, 0), background);
    // Each cell draws its whole frame; neighbours draw their shared line alike.
    painter.fillRect(QRect(cell.left(), cell.top(), cell.width() + b, b), look.borderColour);
    painter.fillRect(QRect(cell.left(), cell.bottom() + 1, cell.width() + b, b), look.borderColour);
    painter.fillRect(QRect(cell.left(), cell.top(), b, cell.height() + b), look.borderColour);
    painter.fillRect(QRect(cell.right() + 1, cell.top(), b, cell.height() + b), look.borderColour);
    if (text.isEmpty())
        return;
    const QFont &textFont = heading ? m_headingFont : font();
    const QFontMetricsF metrics(textFont);
    painter.setFont(textFont);
    painter.setPen(textColour.isValid() ? textColour : palette().color(QPalette::WindowText));
    // On the baseline where rich text puts it, a pixel below the font's ascent.
    const int inset = b + look.padding;
    const qreal x = alignment & Qt::AlignRight
        ? cell.right() + 1 - look.padding - metrics.horizontalAdvance(text)
        : cell.left() + inset;
    painter.drawText(QPointF(x, cell.top() + inset + std::ceil(metrics.ascent()) + TextDrop), text);
}

void SessionReportView::paintStageTable(QPainter &painter, const QRect &exposed) const
{
    const ReportTexts &texts = ReportTexts::instance();
    const QColor heading = ReportLook::instance().headingBackground;
    const QColor grey = classColour("lg");
    const int stages = m_content.stages.size();
    const QVector<int> &y = m_stageGrid.y;
    // Rows in sight only: the table may hold hundreds.
    const int first =
        std::max(0, int(std::upper_bound(y.cbegin(), y.cend(), exposed.top()) - y.cbegin()) - 2);
    const int last =
        std::min(int(y.size()) - 2,
                 int(std::upper_bound(y.cbegin(), y.cend(), exposed.bottom()) - y.cbegin()));

    for (int row = first; row <= last; ++row) {
        if (row == 0) {
            for (int c = 0; c < StageColumns; ++c)
                paintCell(painter, m_stageGrid.cell(0, c), texts.headers.value(c), true,
                          c < 2 ? Qt::AlignLeft : Qt::AlignRight, heading);
        } else if (row <= stages) {
            const ReportContent::StageRow &stage = m_content.stages.at(row - 1);
            for (int c = 0; c < StageColumns; ++c)
                paintCell(painter, m_stageGrid.cell(row, c), stage.cells.value(c), false,
                          c < 2 ? Qt::AlignLeft : Qt::AlignRight, QColor(),
                          c == StageColumns - 1 ? classColour(qPrintable(stage.transferClass))
                                                : QColor());
        } else {
            const int k = row - stages - 1;
            const QStringList &values = k == 0 ? m_content.sums : m_content.statistics.value(k - 1);
            paintCell(painter, m_stageGrid.cell(row, 0, 1, 2),
                      k == 0 ? QStringLiteral("Σ") : texts.statisticLabels.value(k - 1), false,
                      Qt::AlignRight, grey);
            for (int c = 2; c < StageColumns; ++c)
                paintCell(painter, m_stageGrid.cell(row, c), values.value(c - 2), false,
                          Qt::AlignRight, grey);
        }
    }
}

void SessionReportView::paintMatrix(QPainter &painter) const
{
    const ReportTexts &texts = ReportTexts::instance();
    const QColor heading = ReportLook::instance().headingBackground;
    const QColor diagonal = classColour("bbg");
    const int shown = m_content.matrix.size();
    paintCell(painter, m_matrixGrid.cell(0, 0, 2, 1), QString(), true, Qt::AlignLeft, heading);
    paintCell(painter, m_matrixGrid.cell(0, 1, 1, shown), texts.matrixHeading, true, Qt::AlignLeft,
              heading);
    paintCell(painter, m_matrixGrid.cell(2, 0), texts.matrixRowLabel, true, Qt::AlignRight,
              heading);
    for (int j = 0; j < shown; ++j) {
        paintCell(painter, m_matrixGrid.cell(1, j + 1), texts.buttonNames.value(j), true,
                  Qt::AlignRight, heading);
        paintCell(painter, m_matrixGrid.cell(2, j + 1), m_content.requiredCounts.value(j), true,
                  Qt::AlignRight, heading);
    }
    for (int i = 0; i < shown; ++i) {
        const int row = i + MatrixHeadingRows;
        paintCell(painter, m_matrixGrid.cell(row, 0), texts.buttonNames.value(i), true,
                  Qt::AlignRight, heading);
        for (int j = 0; j < shown; ++j)
            paintCell(painter, m_matrixGrid.cell(row, j + 1), m_content.matrix[i].value(j), false,
                      Qt::AlignRight, i == j ? diagonal : QColor());
    }
}
