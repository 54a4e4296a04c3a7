#pragma once

#include "BasePropertyView.h"

class QLineEdit;

// A path property: a line edit, and a button that picks a file or, with the special type
// "PickFolder", a folder. The special type's text behind ":" is the file filter.
class SpecialPropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit SpecialPropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    void pick();

    QLineEdit *m_lineEdit;
};
