#include "DatePropertyView.h"

#include <QDateEdit>
#include <QSignalBlocker>

DatePropertyView::DatePropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_dateEdit(new QDateEdit)
{
    m_dateEdit->setCalendarPopup(true);
    setEditor(m_dateEdit);
    connect(m_dateEdit, &QDateEdit::dateChanged, description,
            [description](const QDate &date) { description->setValue(date); });
    metaValueChanged(description->getValue());
}

void DatePropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_dateEdit);
        m_dateEdit->setDate(value.toDate());
    }
    BasePropertyView::metaValueChanged(value);
}
