#pragma once

#include "BasePropertyView.h"

class QDoubleSpinBox;

// Two spin boxes for a value of two numbers: a size, a point or a range. The value goes to the
// description as the text "a,b", which it reads in the property's own type.
class DualDoubleSpinBox : public BasePropertyView
{
    Q_OBJECT
public:
    enum DualMode { DualMode_Size, DualMode_Point, DualMode_PointF, DualMode_Range };
    Q_ENUM(DualMode)

    DualDoubleSpinBox(AbstractMetaDescription *description, DualMode mode,
                      QWidget *parent = nullptr);

    DualMode mode() const { return m_mode; }
    QWidget *getEditor() const override;

public slots:
    void metaValueChanged(const QVariant &value) override;

protected:
    bool isDefaultValue(const QVariant &value) const override;

private:
    void write();

    DualMode m_mode;
    QDoubleSpinBox *m_first;
    QDoubleSpinBox *m_second;
};
