#include "StringPropertyView.h"

#include "EditableLabel.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>

StringPropertyView::StringPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_lineEdit(new EditableLabel)
{
    m_lineEdit->setPlaceholderText(QCoreApplication::translate(
        "Generic",
        description->extras().value(QStringLiteral("Placeholder")).toUtf8().constData()));
    setEditor(m_lineEdit);
    // A text has no box of its own to show them, so they stand beside it ("5 ош.").
    const QString prefix = translatedSuffixOrPrefix(description->prefix());
    const QString suffix = translatedSuffixOrPrefix(description->suffix());
    if (!suffix.isEmpty())
        editingLayout()->insertWidget(1, new QLabel(suffix));
    if (!prefix.isEmpty())
        editingLayout()->insertWidget(0, new QLabel(prefix));
    connect(m_lineEdit, &QLineEdit::textEdited, description,
            [description](const QString &text) { description->setValue(text); });
    metaValueChanged(description->getValue());
}

void StringPropertyView::metaValueChanged(const QVariant &value)
{
    const QString text = value.toString();
    // Only a change from elsewhere is shown, so that the cursor stays where the user types.
    if (m_lineEdit->text() != text) {
        const QSignalBlocker blocker(m_lineEdit);
        m_lineEdit->setText(text);
        m_lineEdit->resizeByContents();
    }
    BasePropertyView::metaValueChanged(value);
}
