#pragma once

#include "foundation/ConnectionHelper.h"

#include <QWidget>

class QComboBox;
class TarveloModel;

// The subject picker of the page headers: shows the model's current subject and sets it, with
// "Не выбран" for none, and the button for a new subject beside it. Builds nothing without a
// model.
class CurrentUserComboBox : public QWidget
{
    Q_OBJECT
public:
    explicit CurrentUserComboBox(TarveloModel *model, QWidget *parent = nullptr);

    QComboBox *comboBox() const { return m_comboBox; }

private:
    void refill();

    TarveloModel *m_model;
    ConnectionHelper m_connections;
    QComboBox *m_comboBox = nullptr;
};
