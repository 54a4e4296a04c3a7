#include "BasePropertyView.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPushButton>

namespace {
const QString DefaultStyle =
    QStringLiteral("QPushButton { background-color: transparent; border: 1px solid #999; } "
                   "QPushButton:hover { background-color: #CCC}");
const QString ChangedStyle = QStringLiteral("QPushButton { background-color: #39F; border: 0; } "
                                            "QPushButton:hover { background-color: #39F}");
} // namespace

BasePropertyView::BasePropertyView(AbstractMetaDescription *description, QWidget *parent)
    : QWidget(parent)
    , m_editingLayout(new QHBoxLayout(this))
    , m_description(description)
{
    m_editingLayout->setContentsMargins(0, 0, 0, 0);
    m_editingLayout->setSpacing(2);
    // Queued, so that a view never updates its editor inside the editor's own input signal.
    m_connections << connect(description, &AbstractMetaDescription::valueChanged, this,
                             &BasePropertyView::metaValueChanged, Qt::QueuedConnection);

    if (!description->hasDefault() || !description->showDefault() || description->readOnly())
        return;
    m_defaultButton = new QPushButton;
    m_defaultButton->setFixedSize(8, 8);
    m_defaultButton->setFocusPolicy(Qt::ClickFocus);
    m_defaultButton->setToolTip(
        tr("Set default to") + QStringLiteral(" '")
        + translatedSuffixOrPrefix(description->prefix()) + description->defaultValue()
        + translatedSuffixOrPrefix(description->suffix()) + QLatin1Char('\''));
    m_editingLayout->addWidget(m_defaultButton, 100, Qt::AlignLeft);
    connect(m_defaultButton, &QPushButton::clicked, description,
            &AbstractMetaDescription::setDefault);
}

void BasePropertyView::setEditor(QWidget *editor)
{
    m_editor = editor;
    m_editingLayout->insertWidget(0, editor);
}

void BasePropertyView::metaValueChanged(const QVariant &value)
{
    setDefaultButtonChecked(isDefaultValue(value));
}

bool BasePropertyView::isDefaultValue(const QVariant &value) const
{
    return value.toString() == m_description->defaultValue();
}

void BasePropertyView::setDefaultButtonChecked(bool isDefault)
{
    if (m_defaultButton)
        m_defaultButton->setStyleSheet(isDefault ? DefaultStyle : ChangedStyle);
}

QString BasePropertyView::translatedSuffixOrPrefix(const QString &text)
{
    if (text.startsWith(QLatin1String("!-")))
        return text.mid(2);
    return text.isEmpty() ? text
                          : QCoreApplication::translate("Generic", text.toUtf8().constData());
}
