#pragma once

#include "AbstractMetaDescriptor.h"

#include <QMetaProperty>

// The descriptions of the Qt properties of one object, built from its meta-object.
class MetaDescriptor : public AbstractMetaDescriptor
{
    Q_OBJECT
    // A property of the object that a user of the descriptor has singled out; not owned.
    Q_PROPERTY(QMetaProperty *item READ getItem WRITE setItem NOTIFY itemChanged)
public:
    explicit MetaDescriptor(QObject *parent = nullptr);

    // Describes object's properties anew; the object is not owned.
    void set(QObject *object) override;
    QString getClassName() const override;
    QObject *object() const { return m_object; }

    QMetaProperty *getItem() const { return m_item; }
    void setItem(QMetaProperty *item);

signals:
    void itemChanged(QMetaProperty *item);

private:
    void parse(QObject *object);

    QMetaProperty *m_item = nullptr;
    QObject *m_object = nullptr;
};

Q_DECLARE_METATYPE(QMetaProperty *)
