#include "SliderPropertyView.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

SliderPropertyView::SliderPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_slider(new QSlider(Qt::Horizontal))
    , m_spinBox(new QSpinBox)
{
    applyLimits(m_slider);
    applyLimits(m_spinBox);
    applyAffixes(m_spinBox);
    auto *pair = new QWidget;
    auto *layout = new QHBoxLayout(pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider);
    layout->addWidget(m_spinBox, 100);
    setEditor(pair);
    // The spin box alone writes; the slider moves it.
    connect(m_slider, &QSlider::valueChanged, m_spinBox, &QSpinBox::setValue);
    connect(m_spinBox, qOverload<int>(&QSpinBox::valueChanged), m_slider, &QSlider::setValue);
    connect(m_spinBox, qOverload<int>(&QSpinBox::valueChanged), description,
            [description](int value) { description->setValue(value); });
    metaValueChanged(description->getValue());
}

QWidget *SliderPropertyView::getEditor() const
{
    return m_spinBox;
}

void SliderPropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker slider(m_slider);
        const QSignalBlocker spinBox(m_spinBox);
        m_slider->setValue(value.toInt());
        m_spinBox->setValue(value.toInt());
    }
    BasePropertyView::metaValueChanged(value);
}

bool SliderPropertyView::isDefaultValue(const QVariant &value) const
{
    return value.toInt() == description()->defaultValue().toInt();
}
