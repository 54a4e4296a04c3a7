#include "IntPropertyView.h"

#include <QSignalBlocker>
#include <QSpinBox>

IntPropertyView::IntPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_spinBox(new QSpinBox)
{
    applyLimits(m_spinBox);
    applyAffixes(m_spinBox);
    setEditor(m_spinBox);
    connect(m_spinBox, qOverload<int>(&QSpinBox::valueChanged), description,
            [description](int value) { description->setValue(value); });
    metaValueChanged(description->getValue());
}

void IntPropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_spinBox);
        m_spinBox->setValue(value.toInt());
    }
    BasePropertyView::metaValueChanged(value);
}

bool IntPropertyView::isDefaultValue(const QVariant &value) const
{
    return value.toInt() == description()->defaultValue().toInt();
}
