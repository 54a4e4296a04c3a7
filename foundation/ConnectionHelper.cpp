#include "ConnectionHelper.h"

#include <QObject>

ConnectionHelper::~ConnectionHelper()
{
    clear();
}

ConnectionHelper &ConnectionHelper::operator<<(const QMetaObject::Connection &connection)
{
    m_connections << connection;
    return *this;
}

void ConnectionHelper::clear()
{
    for (const QMetaObject::Connection &connection : qAsConst(m_connections))
        QObject::disconnect(connection);
    m_connections.clear();
}
