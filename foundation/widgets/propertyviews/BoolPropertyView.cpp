#include "BoolPropertyView.h"

#include <QCheckBox>
#include <QSignalBlocker>

BoolPropertyView::BoolPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_checkBox(new QCheckBox)
{
    setEditor(m_checkBox);
    connect(m_checkBox, &QCheckBox::stateChanged, description,
            [description](int state) { description->setValue(state == Qt::Checked); });
    metaValueChanged(description->getValue());
}

void BoolPropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_checkBox);
        m_checkBox->setChecked(value.toBool());
    }
    BasePropertyView::metaValueChanged(value);
}
