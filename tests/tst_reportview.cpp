#include "session/SessionReport.h"
#include "session/SessionSummary.h"
#include "session/widgets/SessionReportView.h"
#include "support/LargeSession.h"
#include "support/SessionFixtures.h"
#include "ui/AppStyle.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTextDocument>
#include <QWindow>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace SessionFixtures;

namespace {
constexpr int Width = 1228;
const QRgb Border = qRgb(0x99, 0x99, 0x99);

// The grid's horizontal lines: rows more than half of the border colour.
QList<int> rowLines(const QImage &image)
{
    QList<int> found;
    for (int y = 0; y < image.height(); ++y) {
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == Border;
        if (count * 2 > image.width())
            found << y;
    }
    return found;
}

// The vertical lines that cross row y.
QList<int> columnLines(const QImage &image, int y)
{
    QList<int> found;
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, y) == Border)
            found << x;
    }
    return found;
}

// The lines of one picture lie within three pixels of the other's: rich text shares the spare
// width out in its own steps.
bool sameLines(const QList<int> &painted, const QList<int> &html)
{
    return painted.size() == html.size()
        && std::equal(painted.cbegin(), painted.cend(), html.cbegin(),
                      [](int p, int h) { return qAbs(p - h) <= 3; });
}

ReportContent contentOf(const TarveloSession &session)
{
    return ReportContent(session, SessionSummary(session));
}

// Counts paints and keeps the region of the last.
struct PaintWatch : QObject
{
    int paints = 0;
    QRegion region;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            region = static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};
} // namespace

class ReportViewTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { AppStyle::apply(*qApp); }
    void gridLiesWhereTheHtmlPutsIt_data()
    {
        TestFiles::addRows(QStringLiteral("tables/report_grids.txt"));
    }
    void gridLiesWhereTheHtmlPutsIt();
    void eachReportDrawsWhatChangedAndLooksAsAFreshView();
};

// The painted view against the report HTML laid out by rich text at the same width.
void ReportViewTest::gridLiesWhereTheHtmlPutsIt()
{
    QFETCH(int, stages);
    QFETCH(bool, finished);
    const std::unique_ptr<TarveloSession> session(stages > 0        ? largeSession(stages, 30)
                                                      : stages == 0 ? reportSession()
                                                                    : new TarveloSession);
    session->setFinished(finished);
    const SessionReport report(*session);

    SessionReportView view;
    // Given before the program's look, as a page built before the style sheet is.
    view.setContent(&report.content());
    view.ensurePolished();
    view.resize(Width, view.sizeHint().height());
    const QImage painted = view.grab().toImage();

    QTextDocument document;
    document.setDefaultFont(view.font());
    document.setDocumentMargin(0);
    // As the report label had it: a label that doesn't wrap lays its text out unwrapped.
    QTextOption unwrapped;
    unwrapped.setWrapMode(QTextOption::NoWrap);
    document.setDefaultTextOption(unwrapped);
    document.setHtml(report.html());
    document.setTextWidth(Width);
    QImage html(Width, qCeil(document.size().height()), QImage::Format_RGB32);
    html.fill(Qt::white);
    QPainter painter(&html);
    document.drawContents(&painter);
    painter.end();

    QCOMPARE(painted.height(), html.height());
    const QList<int> rows = rowLines(html);
    QVERIFY(sameLines(rowLines(painted), rows));
    // Columns of the stage table, then of the matrix, on their first rows below the headings.
    const int stageRow = rows.at(1) + 2;
    const int matrixRow = rows.at(rows.size() - 9) + 2;
    for (const int y : {stageRow, matrixRow})
        QVERIFY(sameLines(columnLines(painted, y), columnLines(html, y)));
}

// A run shown report by report: each report draws again the rows it changed and not those
// above, and the view looks as one given that report at once.
void ReportViewTest::eachReportDrawsWhatChangedAndLooksAsAFreshView()
{
    TarveloSession session;
    session.setStart(exampleStart());
    SessionReportView view;
    view.resize(Width, 1400);
    PaintWatch watch;
    view.installEventFilter(&watch);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    // Each report drawn where it changed ends as a view given it at once draws it.
    SessionReportView fresh;
    fresh.resize(view.size());
    const auto show = [&] {
        const int paints = watch.paints;
        const ReportContent content = contentOf(session);
        view.setContent(&content);
        QTRY_VERIFY(watch.paints > paints);
        fresh.setContent(&content);
        QCOMPARE(
            view.screen()->grabWindow(view.winId()).toImage().convertToFormat(QImage::Format_RGB32),
            fresh.grab().toImage().convertToFormat(QImage::Format_RGB32));
    };
    QRandomGenerator random(5);
    for (int s = 0; s < 6; ++s) {
        auto *stage = new SessionStage;
        stage->index = s;
        stage->stepCount = 4;
        session.addStage(stage);
        show();
        for (int i = 0; i < 4; ++i) {
            stage->addStep(step(int(random.bounded(18)), int(random.bounded(9)), i != 2,
                                int(random.bounded(100, 1500)), 1000));
            // Taken before: a grab paints the whole view.
            const QList<int> rows = rowLines(view.grab().toImage());
            show();
            // The header and first stage row stay as they were drawn.
            if (s > 0)
                QVERIFY(!watch.region.intersects(QRect(0, 0, Width, rows.at(2))));
        }
        stage->action = QString::fromLatin1(s % 2 ? "+1" : "repeat");
        show();
    }
    session.setFinished(true);
    show();
}

QTEST_MAIN(ReportViewTest)
#include "tst_reportview.moc"
