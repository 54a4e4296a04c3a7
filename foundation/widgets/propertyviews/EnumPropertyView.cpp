#include "EnumPropertyView.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QListView>
#include <QMetaEnum>
#include <QSignalBlocker>

EnumPropertyView::EnumPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_comboBox(new QComboBox)
{
    // A list view takes the style sheet's item padding, which the default delegate ignores.
    m_comboBox->setView(new QListView(m_comboBox));
    const QMetaEnum enumeration = description->enumerator();
    for (int i = 0; i < enumeration.keyCount(); ++i)
        m_comboBox->addItem(QCoreApplication::translate(enumeration.name(), enumeration.key(i)),
                            enumeration.value(i));
    setEditor(m_comboBox);
    connect(m_comboBox, qOverload<int>(&QComboBox::currentIndexChanged), description,
            [this, description] { description->setValue(m_comboBox->currentData()); });
    metaValueChanged(description->getValue());
}

void EnumPropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_comboBox);
        m_comboBox->setCurrentIndex(m_comboBox->findData(value.toInt()));
    }
    BasePropertyView::metaValueChanged(value);
}

bool EnumPropertyView::isDefaultValue(const QVariant &value) const
{
    return QLatin1String(description()->enumerator().valueToKey(value.toInt()))
        == description()->defaultValue();
}
