#include "TarveloSessionWidget.h"

#include "SessionExportCommand.h"
#include "SessionStatusLine.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "foundation/widgets/NScrollViewer.h"
#include "session/ReportTexts.h"
#include "session/SessionReport.h"
#include "session/SessionSummary.h"
#include "session/widgets/SessionReportView.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

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
        if (m_statusLine)
            m_statusLine->refresh();
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
    grid->addWidget(viewer, 2, 0, 1, 2);
    grid->setRowStretch(2, 100);
    updateReport();

    if (m_model) {
        m_statusLine = new SessionStatusLine(m_model);
        grid->addWidget(m_statusLine, 1, 0, 1, 2);
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
    // The view of a stored session has no model of its own and exports for the application's.
    const SessionExportCommand command(*m_session, m_exportTable, reportHtml(),
                                       m_model ? m_model : TarveloModel::instance());
    const QString written =
        command.run([this](const QString &path, const QStringList &filters, QString *filter) {
            return chooseExportFile(path, filters, filter);
        });
    if (!written.isEmpty())
        emit exported(written);
}
