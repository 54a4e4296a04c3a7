#pragma once

#include "foundation/ConnectionHelper.h"

#include <QList>
#include <QTimer>
#include <QVariant>
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class SessionReportView;
class SessionStatusLine;
class TarveloModel;
class TarveloSession;

// The live report of the model's session, brought up to date at most once a frame; and, without a
// model, the view of a stored session on the subject page. While a session runs the operator can
// tick "do not record"; once it has ended the Export button takes that place. The live view also
// has a status line on where the session stands on disk and on the link to the box.
class TarveloSessionWidget : public QWidget
{
    Q_OBJECT
public:
    explicit TarveloSessionWidget(TarveloModel *model, QWidget *parent = nullptr);

    // The caller keeps the ownership; null clears the view.
    void setSession(TarveloSession *session);
    TarveloSession *session() const { return m_session; }

    void updateReport();
    QList<QList<QVariant>> exportTable() const { return m_exportTable; }

    QLabel *titleLabel() const { return m_titleLabel; }
    // The report HTML of what the view shows, as the PDF prints it.
    QString reportHtml() const;
    SessionReportView *reportView() const { return m_reportView; }
    QPushButton *exportButton() const { return m_exportButton; }
    QCheckBox *recordCheckBox() const { return m_recordCheckBox; }
    // Null without a model.
    SessionStatusLine *statusLine() const { return m_statusLine; }

public slots:
    void exportSession();

signals:
    void exported(const QString &filePath);

protected:
    // The save dialog; a test overrides it to answer without a window. Returns the file name,
    // or empty when cancelled, and sets the chosen filter.
    virtual QString chooseExportFile(const QString &path, const QStringList &filters,
                                     QString *selectedFilter);

private:
    void onSessionUpdated();

    TarveloModel *m_model;
    SessionReportView *m_reportView = nullptr;
    QLabel *m_titleLabel = nullptr;
    ConnectionHelper m_connections;
    TarveloSession *m_session = nullptr;
    QPushButton *m_exportButton = nullptr;
    QCheckBox *m_recordCheckBox = nullptr;
    SessionStatusLine *m_statusLine = nullptr;
    QList<QList<QVariant>> m_exportTable;
    bool m_hasRecordOption = false;
    QTimer m_pendingUpdate;
};
