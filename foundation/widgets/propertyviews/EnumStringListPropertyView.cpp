#include "EnumStringListPropertyView.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QListView>
#include <QSignalBlocker>

EnumStringListPropertyView::EnumStringListPropertyView(AbstractMetaDescription *description,
                                                       QWidget *parent)
    : BasePropertyView(description, parent)
    , m_comboBox(new QComboBox)
{
    m_comboBox->setView(new QListView(m_comboBox));
    const QStringList options = description->enums();
    for (const QString &option : options)
        m_comboBox->addItem(QCoreApplication::translate("Generic", option.toUtf8().constData()),
                            option);
    setEditor(m_comboBox);
    connect(m_comboBox, qOverload<int>(&QComboBox::currentIndexChanged), description,
            [this, description] { description->setValue(m_comboBox->currentData()); });
    metaValueChanged(description->getValue());
}

void EnumStringListPropertyView::metaValueChanged(const QVariant &value)
{
    {
        const QSignalBlocker blocker(m_comboBox);
        m_comboBox->setCurrentIndex(m_comboBox->findData(value.toString()));
    }
    BasePropertyView::metaValueChanged(value);
}
