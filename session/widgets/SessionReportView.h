#pragma once

#include "session/ReportContent.h"

#include <QWidget>

#include <array>

// The session report as the operator sees it, painted straight from its cells with the looks
// of the report HTML: the stage table with its Σ and statistic rows, the required/actual
// matrix and, under a finished session, the finish line. Laid out at the widget's width like
// the HTML; a new content draws again only the cells that changed, and a paint draws only the
// rows in sight, so an update costs what changed and not what the session holds.
class SessionReportView : public QWidget
{
    Q_OBJECT
public:
    explicit SessionReportView(QWidget *parent = nullptr);

    // Null shows nothing.
    void setContent(const ReportContent *content);
    const ReportContent &content() const { return m_content; }
    bool isEmpty() const { return m_empty; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    static constexpr int StageColumns = 11;
    static constexpr int MatrixColumns = 10;
    using StageWidths = std::array<qreal, StageColumns>;

    // Column edges and row edges of one table: a cell (r, c) spans [x[c], x[c + 1]] by
    // [y[r], y[r + 1]], borders included; the table's last border lies past the last edge.
    struct Grid
    {
        QVector<int> x;
        QVector<int> y;
        QRect cell(int row, int column, int rowSpan = 1, int columnSpan = 1) const;
        QRect rows(int first, int last) const;
    };

    void measureFonts();
    StageWidths stageWidths(int row) const;
    void layoutTables();
    QVector<int> columnEdges(const QVector<qreal> &contentWidths, int percentColumn) const;
    QVector<int> rowEdges(int top, const QVector<int> &lineHeights) const;
    QRect matrixCellsDiffering(const ReportContent &next) const;

    void paintStageTable(QPainter &painter, const QRect &exposed) const;
    void paintMatrix(QPainter &painter) const;
    void paintCell(QPainter &painter, const QRect &cell, const QString &text, bool heading,
                   Qt::Alignment alignment, const QColor &background,
                   const QColor &textColour = QColor()) const;

    ReportContent m_content;
    bool m_empty = true;
    QVector<StageWidths> m_stageWidths; // text widths of each stage row, kept between updates
    QFont m_headingFont;
    QFont m_finishFont;
    int m_lineHeight = 0;
    int m_headingLineHeight = 0;
    int m_breakHeight = 0;
    Grid m_stageGrid;
    Grid m_matrixGrid;
    int m_finishTop = 0;
    int m_height = 0;
    int m_minimumWidth = 0;
};
