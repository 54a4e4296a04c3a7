#include "HeaderedWidget.h"

#include "CurrentUserComboBox.h"
#include "PlayScriptStopSessionButton.h"
#include "app/TarveloModel.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/UIHelper.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

HeaderedWidget::HeaderedWidget(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_pageLayout(new QVBoxLayout(this))
    , m_headerButtons(new QHBoxLayout)
    , m_model(model)
    , m_scriptCombo(new QComboBox)
    , m_playButton(new PlayScriptStopSessionButton(model))
{
    m_pageLayout->setContentsMargins(0, 0, 0, 0);
    m_headerButtons->setContentsMargins(0, 0, 0, 0);

    auto *header = new QWidget;
    UIHelper::ChangeBackground(header, QColor(0xCCCCCC));
    m_headerLayout = new QHBoxLayout(header);
    m_pageLayout->addWidget(header);

    m_scriptCombo->setMinimumWidth(200);
    m_headerLayout->addWidget(m_scriptCombo);
    m_headerLayout->addLayout(m_headerButtons);
    m_headerLayout->addStretch(100);
    m_headerLayout->addWidget(new CurrentUserComboBox(model));
    m_headerLayout->addWidget(m_playButton);

    if (!m_model)
        return;
    // Only the user's own choice reaches this slot: refills run with signals blocked.
    connect(m_scriptCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &HeaderedWidget::selectScript);
    m_connections << connect(m_model, &TarveloModel::scriptsUpdated, this,
                             &HeaderedWidget::refillScripts)
                  << connect(m_model, &TarveloModel::scriptChanged, this,
                             &HeaderedWidget::refillScripts);
    refillScripts();
}

void HeaderedWidget::refillScripts()
{
    static const QIcon icon = MediaHelper::icon(QStringLiteral(":/resources/Images/script.svg"));
    const QSignalBlocker blocker(m_scriptCombo);
    const QStringList titles = m_model->scriptTitles();
    m_scriptCombo->clear();
    for (const QString &title : titles)
        m_scriptCombo->addItem(icon, title);
    // With no current script (or one missing from the list) the combo shows nothing.
    m_scriptCombo->setCurrentIndex(titles.indexOf(m_model->currentScriptTitle()));
}

void HeaderedWidget::selectScript(int index)
{
    const QStringList titles = m_model->scriptTitles();
    if (index >= 0 && index < titles.size())
        m_model->selectScript(titles.at(index));
}
