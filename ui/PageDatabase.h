#pragma once

#include <QWidget>

class TarveloModel;

// Tab 2: the register of subjects and their stored sessions.
class PageDatabase : public QWidget
{
    Q_OBJECT
public:
    explicit PageDatabase(TarveloModel *model, QWidget *parent = nullptr);
};
