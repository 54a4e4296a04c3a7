#pragma once

#include "BasePropertyView.h"

class QPlainTextEdit;

// A text box of several lines for a long text property.
class MultilinePropertyView : public BasePropertyView
{
    Q_OBJECT
public:
    explicit MultilinePropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

public slots:
    void metaValueChanged(const QVariant &value) override;

private:
    QPlainTextEdit *m_textEdit;
};
