#pragma once

#include <QLineEdit>

// A line edit that grows with its text, so that a short value takes little room in a form.
class EditableLabel : public QLineEdit
{
    Q_OBJECT
public:
    explicit EditableLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;

public slots:
    void resizeByContents();
};
