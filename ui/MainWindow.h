#pragma once

#include <QMainWindow>

class QTabWidget;
class TarveloModel;

// The one top-level window. It creates and owns the model.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);

    TarveloModel *model() const { return m_model; }

private:
    TarveloModel *m_model = nullptr;
    QTabWidget *m_tabs = nullptr;
};
