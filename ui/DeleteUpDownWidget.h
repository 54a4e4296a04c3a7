#pragma once

#include <QWidget>

// The delete, up and down buttons of one step row in the stage editor.
class DeleteUpDownWidget : public QWidget
{
    Q_OBJECT
public:
    explicit DeleteUpDownWidget(QWidget *parent = nullptr);

signals:
    void onDelete();
    void onUp();
    void onDown();
};
