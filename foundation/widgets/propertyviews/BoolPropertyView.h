#pragma once

#include "BasePropertyView.h"

class QCheckBox;

// A check box for a bool property.
class BoolPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit BoolPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    QCheckBox *m_checkBox;
};
