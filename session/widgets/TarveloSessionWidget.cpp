#include "TarveloSessionWidget.h"

#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/AppHelper.h"
#include "foundation/DesktopShell.h"
#include "foundation/FileUtilities.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/NScrollViewer.h"
#include "session/ReportTexts.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"
#include "session/SessionSummary.h"
#include "session/widgets/SessionReportView.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QTextDocument>

namespace {
// One frame of a 60 Hz screen.
constexpr int FrameMs = 16;
} // namespace

TarveloSessionWidget::TarveloSessionWidget(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    m_recordCheckBox = new QCheckBox(tr("Не записывать результаты"));
    m_recordCheckBox->hide();
    connect(m_recordCheckBox, &QCheckBox::clicked, this, [this] {
        if (m_session)
            m_session->setDoNotRecord(!m_session->doNotRecord());
    });
    m_exportButton = new QPushButton(tr("Экспорт"));
    connect(m_exportButton, &QPushButton::clicked, this, &TarveloSessionWidget::exportSession);

    m_titleLabel = new QLabel;
    m_reportView = new SessionReportView;
    auto *viewer = new NScrollViewer(Qt::Vertical);
    viewer->setTransparentBackground(false);
    viewer->add(m_reportView);

    setContentsMargins(0, 0, 0, 0);
    auto *grid = new QGridLayout(this);
    grid->setSpacing(0);
    grid->addWidget(m_titleLabel, 0, 0, Qt::AlignLeft);
    // The check box and the Export button share a cell: never both are shown.
    grid->addWidget(m_recordCheckBox, 0, 1, Qt::AlignRight);
    grid->addWidget(m_exportButton, 0, 1, Qt::AlignRight);
    grid->addWidget(viewer, 1, 0, 1, 2);
    grid->setRowStretch(1, 100);
    updateReport();

    if (m_model) {
        m_connections << connect(m_model, &TarveloModel::sessionUpdated, this,
                                 &TarveloSessionWidget::onSessionUpdated);
        m_hasRecordOption = true;
    }
    m_recordCheckBox->setVisible(m_hasRecordOption);
    m_pendingUpdate.setSingleShot(true);
    m_pendingUpdate.setInterval(FrameMs);
    connect(&m_pendingUpdate, &QTimer::timeout, this, &TarveloSessionWidget::updateReport);
    // A view built while a session runs (its page is built when first shown) starts with it.
    if (m_model)
        onSessionUpdated();
}

void TarveloSessionWidget::setSession(TarveloSession *session)
{
    m_session = session;
    updateReport();
}

void TarveloSessionWidget::onSessionUpdated()
{
    TarveloSession *session = m_model->session();
    // The box follows the session object: a click made before any session is put back here.
    if (session)
        m_recordCheckBox->setChecked(session->doNotRecord());
    // A new run and its end show at once; the reports in between, which can come faster than
    // the screen is drawn, are gathered into at most one update a frame.
    if (session != m_session || !session || session->finished()) {
        m_session = session;
        updateReport();
    } else if (!m_pendingUpdate.isActive()) {
        m_pendingUpdate.start();
    }
}

void TarveloSessionWidget::updateReport()
{
    m_pendingUpdate.stop();
    if (!m_session) {
        m_titleLabel->hide();
        m_exportButton->hide();
        m_recordCheckBox->setVisible(m_hasRecordOption);
        m_reportView->setContent(nullptr);
        return;
    }
    const bool exportable = m_session->finished() || m_session->loaded();
    m_titleLabel->setText(SessionReport::heading(*m_session, ReportTexts::instance().sessionWord));
    m_titleLabel->show();
    m_exportButton->setVisible(exportable);
    m_recordCheckBox->setVisible(m_hasRecordOption && !exportable);
    // A running session's view needs its cells alone; the export table comes with its end.
    if (exportable) {
        const SessionReport report(*m_session);
        m_exportTable = report.exportTable();
        m_reportView->setContent(&report.content());
    } else {
        const ReportContent content(*m_session, SessionSummary(*m_session));
        m_reportView->setContent(&content);
    }
}

QString TarveloSessionWidget::reportHtml() const
{
    return m_reportView->isEmpty() ? QString() : SessionReport::html(m_reportView->content());
}

QString TarveloSessionWidget::chooseExportFile(const QString &path, const QStringList &filters,
                                               QString *selectedFilter)
{
    return QFileDialog::getSaveFileName(this, tr("Экспорт"), path,
                                        filters.join(QStringLiteral(";;")), selectedFilter);
}

void TarveloSessionWidget::exportSession()
{
    // The button shows only for an ended session; a running one has no table of its own yet.
    if (!m_session || !(m_session->finished() || m_session->loaded()))
        return;
    // The dialog runs an event loop in which the box may start the next session and replace
    // what this view shows; the file is made of what was on show when the operator asked. The
    // PDF prints the report as shown, not rebuilt.
    const TarveloSession *session = m_session;
    const XLSXHelper::Rows table = m_exportTable;
    const QString shownHtml = reportHtml();
    // The view of a stored session has no model of its own and exports for the application's.
    const TarveloModel *model = m_model ? m_model : TarveloModel::instance();
    const QString subject =
        model && model->currentUser() ? model->currentUser()->fullName(false) : QString();
    TarveloSettings *settings = model ? model->settings() : nullptr;

    QString folder = settings ? settings->getLastExportFolder() : QString();
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString filter =
        SessionExport::chosenFilter(settings ? settings->getLastExportFilter() : QString());
    const QString filePath = chooseExportFile(
        FileUtilities::FolderSlash(folder) + SessionExport::defaultFileName(*session, subject),
        SessionExport::filters(), &filter);
    if (filePath.isEmpty())
        return;

    // Remembered before writing, so a failed write still moves the folder.
    if (settings) {
        settings->setLastExportFolder(QFileInfo(filePath).absoluteDir().absolutePath());
        settings->setLastExportFilter(filter);
    }

    const SessionExport::Format format = SessionExport::formatForFilter(filter);
    bool written = true;
    if (format == SessionExport::Format::Pdf)
        printPdf(filePath, SessionExport::pdfHtml(*session, shownHtml, subject));
    else
        written =
            SessionExport::writeTable(format, table, filePath, SessionExport::sheetName(*session));
    if (!written) {
        AppHelper::warningMessage(tr("Ошибка сохранения") + QStringLiteral(" \"") + filePath
                                      + QLatin1Char('"'),
                                  QString(), QMessageBox::Warning);
        return;
    }

    switch (settings ? settings->getExportBehavior() : TarveloSettings::OnExport_OpenFile) {
    case TarveloSettings::OnExport_OpenFile:
        DesktopShell::openFile(filePath);
        break;
    case TarveloSettings::OnExport_OpenFolder:
        AppHelper::showInFolder(filePath);
        break;
    case TarveloSettings::OnExport_DoNothing:
        break;
    }
}

// A4 at screen resolution, default margins and fonts, laid out as QTextDocument::print() lays
// out its copy of a document: the printer's page margins (2 mm where it has none), 2 cm around
// the text and the page number under its bottom right corner. Laid out once, on the printer itself,
// instead of at screen width first and then again in a copy, which cost the most of a long
// session's export. A printer that can't write its file only warns on the console: the export goes
// on as if it had succeeded.
void TarveloSessionWidget::printPdf(const QString &filePath, const QString &html)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(filePath);
    if (printer.pageLayout().margins().isNull())
        printer.setPageMargins(QMarginsF(2, 2, 2, 2), QPageLayout::Millimeter);
    QPainter painter(&printer);
    if (!painter.isActive())
        return;

    QTextDocument document;
    document.documentLayout()->setPaintDevice(&printer);
    const qreal dpiX = QGuiApplication::primaryScreen()->logicalDotsPerInchX();
    const qreal dpiY = QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    const int margin = int(2 / 2.54 * dpiY);
    document.setDocumentMargin(margin);
    const QRectF body(0, 0, printer.width(), printer.height());
    document.setPageSize(body.size());
    document.setHtml(html);

    const QPointF pageNumberAt(body.width() - margin * printer.logicalDpiX() / dpiX,
                               body.height() - margin * printer.logicalDpiY() / dpiY
                                   + QFontMetrics(document.defaultFont(), &printer).ascent()
                                   + 5 * printer.logicalDpiY() / 72.0);
    QAbstractTextDocumentLayout::PaintContext context;
    // Black whatever the system's text colour: the page is white paper.
    context.palette.setColor(QPalette::Text, Qt::black);
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            printer.newPage();
        const QRectF view(0, page * body.height(), body.width(), body.height());
        painter.save();
        painter.translate(0, -view.top());
        painter.setClipRect(view);
        context.clip = view;
        document.documentLayout()->draw(&painter, context);
        painter.setClipping(false);
        painter.setFont(document.defaultFont());
        const QString number = QString::number(page + 1);
        painter.drawText(qRound(pageNumberAt.x() - painter.fontMetrics().horizontalAdvance(number)),
                         qRound(pageNumberAt.y() + view.top()), number);
        painter.restore();
    }
}
