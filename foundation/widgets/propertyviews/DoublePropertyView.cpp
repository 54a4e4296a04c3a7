#include "DoublePropertyView.h"

#include "DoubleSpinBoxWithSuggestions.h"

#include <QSignalBlocker>

DoublePropertyView::DoublePropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_spinBox(new DoubleSpinBoxWithSuggestions)
{
    const QMap<QString, QString> extras = description->extras();
    if (extras.contains(QStringLiteral("Precision")))
        m_spinBox->setDecimals(extras.value(QStringLiteral("Precision")).toInt());
    applyLimits(m_spinBox);
    applyAffixes(m_spinBox);
    m_spinBox->setSuggestions(extras.value(QStringLiteral("Suggestions")));
    setEditor(m_spinBox);
    connect(m_spinBox, qOverload<double>(&QDoubleSpinBox::valueChanged), description,
            [description](double value) { description->setValue(value); });
    metaValueChanged(description->getValue());
}

void DoublePropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_spinBox);
        m_spinBox->setValue(value.toDouble());
    }
    BasePropertyView::metaValueChanged(value);
}

bool DoublePropertyView::isDefaultValue(const QVariant &value) const
{
    return qFuzzyCompare(1 + value.toDouble(), 1 + description()->defaultValue().toDouble());
}
