#include "NewVersionButton.h"

#include "foundation/NewVersionChecker.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char *const DefaultStyle =
    "QPushButton { color: #000; background: #0BE; text-decoration: none; border-radius: 4px; "
    "padding: 4px 8px; } QPushButton:hover { background: #0AD}";
}

NewVersionButton::NewVersionButton(const QString &preliminaryText, const QString &style,
                                   QWidget *parent)
    : QWidget(parent)
    , m_checker(new NewVersionChecker(preliminaryText, this))
    , m_button(new QPushButton)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_button);
    m_button->setFlat(true);
    setButtonStyle(style.isEmpty() ? QString::fromLatin1(DefaultStyle) : style);
    m_button->setCursor(Qt::PointingHandCursor);
    m_button->setContentsMargins(0, 0, 0, 0);
    m_button->hide();
    connect(m_button, &QPushButton::clicked, m_checker, &NewVersionChecker::action);
    connect(m_checker, &NewVersionChecker::onSetText, m_button, &QPushButton::setText);
    connect(m_checker, &NewVersionChecker::onSetTooltip, m_button, &QPushButton::setToolTip);
    connect(m_checker, &NewVersionChecker::onSetVisible, m_button, &QPushButton::setVisible);
}

void NewVersionButton::setPreliminaryText(const QString &text)
{
    m_checker->setPreliminaryText(text);
}

void NewVersionButton::setButtonStyle(const QString &style)
{
    m_button->setStyleSheet(style);
}
