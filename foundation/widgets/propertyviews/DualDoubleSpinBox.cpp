#include "DualDoubleSpinBox.h"

#include "foundation/MetaDescription.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QSignalBlocker>

namespace {
// The two numbers of a value or of a declared default; zeros when the text has none.
QPair<double, double> numbers(const QString &text)
{
    double a = 0;
    double b = 0;
    MetaDescription::parsePointOrSize(text, a, b);
    return {a, b};
}
} // namespace

DualDoubleSpinBox::DualDoubleSpinBox(AbstractMetaDescription *description, DualMode mode,
                                     QWidget *parent)
    : BasePropertyView(description, parent)
    , m_mode(mode)
    , m_first(new QDoubleSpinBox)
    , m_second(new QDoubleSpinBox)
{
    // Whole numbers for the integer types, whatever the mode says.
    const QString precision = description->extras().value(QStringLiteral("Precision"));
    const bool whole = description->type() == QLatin1String("QPoint")
        || description->type() == QLatin1String("QSize");
    auto *pair = new QWidget;
    auto *layout = new QHBoxLayout(pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    for (QDoubleSpinBox *box : {m_first, m_second}) {
        box->setDecimals(!precision.isEmpty() ? precision.toInt() : whole ? 0 : 2);
        applyLimits(box);
        applyAffixes(box);
        layout->addWidget(box);
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                &DualDoubleSpinBox::write);
    }
    setEditor(pair);
    metaValueChanged(description->getValue());
}

QWidget *DualDoubleSpinBox::getEditor() const
{
    return m_first;
}

void DualDoubleSpinBox::write()
{
    if (m_mode == DualMode_Range)
        m_second->setMinimum(m_first->value());
    description()->setTextValue(QString::number(m_first->value(), 'g', 15) + QLatin1Char(',')
                                + QString::number(m_second->value(), 'g', 15));
}

void DualDoubleSpinBox::metaValueChanged(const QVariant &value)
{
    const QPair<double, double> shown = numbers(MetaDescription::valueText(value));
    {
        const QSignalBlocker first(m_first);
        const QSignalBlocker second(m_second);
        m_first->setValue(shown.first);
        if (m_mode == DualMode_Range)
            m_second->setMinimum(shown.first);
        m_second->setValue(shown.second);
    }
    BasePropertyView::metaValueChanged(value);
}

bool DualDoubleSpinBox::isDefaultValue(const QVariant &value) const
{
    return numbers(MetaDescription::valueText(value)) == numbers(description()->defaultValue());
}
