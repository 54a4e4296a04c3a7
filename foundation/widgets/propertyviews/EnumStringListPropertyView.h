#pragma once

#include "BasePropertyView.h"

class QComboBox;

// A list of the fixed text options of a property (its description's enums), each shown
// translated in "Generic" and stored as it stands.
class EnumStringListPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit EnumStringListPropertyView(AbstractMetaDescription *description,
                                        QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    QComboBox *m_comboBox;
};
