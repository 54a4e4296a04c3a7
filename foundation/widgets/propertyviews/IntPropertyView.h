#pragma once

#include "BasePropertyView.h"

class QSpinBox;

// A spin box for an integer property.
class IntPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit IntPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

protected:
    bool isDefaultValue(const QVariant &value) const override;

private:
    QSpinBox *m_spinBox;
};
