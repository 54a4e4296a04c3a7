#include "MultilinePropertyView.h"

#include <QPlainTextEdit>
#include <QSignalBlocker>

MultilinePropertyView::MultilinePropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_textEdit(new QPlainTextEdit)
{
    m_textEdit->setPlaceholderText(description->extras().value(QStringLiteral("Placeholder")));
    setEditor(m_textEdit);
    connect(m_textEdit, &QPlainTextEdit::textChanged, description,
            [this, description] { description->setValue(m_textEdit->toPlainText()); });
    metaValueChanged(description->getValue());
}

void MultilinePropertyView::metaValueChanged(const QVariant &value)
{
    const QString text = value.toString();
    if (m_textEdit->toPlainText() != text) {
        const QSignalBlocker blocker(m_textEdit);
        m_textEdit->setPlainText(text);
    }
    BasePropertyView::metaValueChanged(value);
}
