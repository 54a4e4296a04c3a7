#pragma once

#include "BasePropertyView.h"

class EditableLabel;

// A line edit for a text property, with its declared placeholder, prefix and suffix.
class StringPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit StringPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    EditableLabel *m_lineEdit;
};
