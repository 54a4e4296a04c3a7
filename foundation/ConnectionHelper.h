#pragma once

#include <QList>
#include <QMetaObject>

// Holds connections that must be dropped together; as a member it ties their lifetime to the
// owning object. Copies hold the same connections.
class ConnectionHelper
{
public:
    ConnectionHelper() = default;
    ConnectionHelper(const ConnectionHelper &) = default;
    ConnectionHelper &operator=(const ConnectionHelper &) = default;
    ~ConnectionHelper();

    ConnectionHelper &operator<<(const QMetaObject::Connection &connection);
    void clear();
    int count() const { return m_connections.size(); }

private:
    QList<QMetaObject::Connection> m_connections;
};
