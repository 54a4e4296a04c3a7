#include "EditableLabel.h"

#include <QStyle>
#include <QStyleOptionFrame>

EditableLabel::EditableLabel(QWidget *parent)
    : QLineEdit(parent)
{
    setMinimumWidth(50);
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QLineEdit::textEdited, this, &EditableLabel::resizeByContents);
}

QSize EditableLabel::sizeHint() const
{
    const QString shown = text().isEmpty() ? placeholderText() : text();
    QStyleOptionFrame option;
    initStyleOption(&option);
    // Room for the text and the cursor behind it, in the frame and padding of the style.
    const QSize contents(fontMetrics().horizontalAdvance(shown) + fontMetrics().averageCharWidth(),
                         QLineEdit::sizeHint().height());
    const QSize framed = style()->sizeFromContents(QStyle::CT_LineEdit, &option, contents, this);
    return QSize(framed.width(), QLineEdit::sizeHint().height());
}

void EditableLabel::resizeByContents()
{
    updateGeometry();
}
