#pragma once

#include "BasePropertyView.h"

class QLabel;
class QPushButton;

// A colour property: a swatch that opens the colour dialog, and the colour's name. The special
// type "Alpha" lets the dialog choose transparency too.
class ColorPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit ColorPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    void pick();
    bool withAlpha() const;

    QPushButton *m_swatch;
    QLabel *m_name;
};
