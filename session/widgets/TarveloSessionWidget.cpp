#include "TarveloSessionWidget.h"

#include "SessionExportCommand.h"
#include "SessionStatusLine.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "foundation/widgets/NScrollViewer.h"
#include "session/SessionReport.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

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
    m_reportLabel = new QLabel;
    m_reportLabel->setContentsMargins(0, 0, 0, 0);
    m_reportLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *viewer = new NScrollViewer(Qt::Vertical);
    viewer->setTransparentBackground(false);
    viewer->add(m_reportLabel);

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
}

void TarveloSessionWidget::setSession(TarveloSession *session)
{
    m_session = session;
    updateReport();
}

void TarveloSessionWidget::onSessionUpdated()
{
    m_session = m_model->session();
    // The box follows the session object: a click made before any session is put back here.
    if (m_session)
        m_recordCheckBox->setChecked(m_session->doNotRecord());
    updateReport();
}

void TarveloSessionWidget::updateReport()
{
    if (!m_session) {
        m_titleLabel->hide();
        m_exportButton->hide();
        m_recordCheckBox->setVisible(m_hasRecordOption);
        m_reportLabel->setText(QString());
        return;
    }
    const SessionReport report(*m_session);
    if (report.isExportable())
        m_exportTable = report.exportTable();
    m_titleLabel->setText(report.title());
    m_titleLabel->show();
    m_exportButton->setVisible(report.isExportable());
    m_recordCheckBox->setVisible(m_hasRecordOption && !report.isExportable());
    m_reportLabel->setText(report.html());
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
    const SessionExportCommand command(*m_session, m_exportTable, m_reportLabel->text(),
                                       m_model ? m_model : TarveloModel::instance());
    const QString written =
        command.run([this](const QString &path, const QStringList &filters, QString *filter) {
            return chooseExportFile(path, filters, filter);
        });
    if (!written.isEmpty())
        emit exported(written);
}
