#pragma once

#include "foundation/ConnectionHelper.h"

#include <QLabel>

class TarveloModel;

// One line of the live view on what the operator can't see in the report: where the model's
// session stands on disk (saved, with a link that shows the file in its folder; not saved, with
// the file and the reason; not recorded), and that the link to the box is lost while the
// session runs. Hidden while there is nothing to say.
class SessionStatusLine : public QLabel
{
    Q_OBJECT
public:
    explicit SessionStatusLine(TarveloModel *model, QWidget *parent = nullptr);

    // Follows the model by itself; the view calls it when the operator ticks "do not record".
    void refresh();

private:
    QString saveText() const;

    TarveloModel *m_model;
    ConnectionHelper m_connections;
};
