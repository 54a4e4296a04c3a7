#pragma once

#include "BasePropertyView.h"

class DoubleSpinBoxWithSuggestions;

// A spin box for a double or float property, with the declared precision and suggestions.
class DoublePropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit DoublePropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

protected:
    bool isDefaultValue(const QVariant &value) const override;

private:
    DoubleSpinBoxWithSuggestions *m_spinBox;
};
