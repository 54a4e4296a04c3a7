#pragma once

#include <QWidget>

class TarveloModel;

// A page that only needs the model.
class BasePage : public QWidget
{
    Q_OBJECT
public:
    explicit BasePage(TarveloModel *model, QWidget *parent = nullptr);

protected:
    TarveloModel *model() const { return m_model; }

private:
    TarveloModel *m_model;
};
