#pragma once

#include <QWidget>

class TarveloModel;

// The button that opens the editor for a new subject; the subject it creates becomes the
// current one on every page. Builds nothing without a model.
class AddUserButton : public QWidget
{
    Q_OBJECT
public:
    explicit AddUserButton(TarveloModel *model, QWidget *parent = nullptr);
};
