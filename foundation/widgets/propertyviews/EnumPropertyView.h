#pragma once

#include "BasePropertyView.h"

class QComboBox;

// A list of the keys of an enumeration property, in declared order, each translated in the
// context of the enumeration's name.
class EnumPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit EnumPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

protected:
    bool isDefaultValue(const QVariant &value) const override;

private:
    QComboBox *m_comboBox;
};
