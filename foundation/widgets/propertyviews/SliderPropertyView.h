#pragma once

#include "BasePropertyView.h"

class QSlider;
class QSpinBox;

// A slider and a spin box that follow each other, for an integer property with a range.
class SliderPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit SliderPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

    QWidget *getEditor() const override;

public slots:
    void metaValueChanged(const QVariant &value) override;

protected:
    bool isDefaultValue(const QVariant &value) const override;

private:
    QSlider *m_slider;
    QSpinBox *m_spinBox;
};
