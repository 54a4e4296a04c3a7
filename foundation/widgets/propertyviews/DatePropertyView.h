#pragma once

#include "BasePropertyView.h"

class QDateEdit;

// A date field with a calendar, for a date or date-time property.
class DatePropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit DatePropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    QDateEdit *m_dateEdit;
};
