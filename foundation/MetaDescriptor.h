#pragma once

#include "AbstractMetaDescriptor.h"

// The descriptions of the Qt properties of one object, built from its meta-object.
class MetaDescriptor : public AbstractMetaDescriptor
{
    Q_OBJECT
public:
    explicit MetaDescriptor(QObject *parent = nullptr);

    // Describes object's properties anew; the object is not owned.
    void set(QObject *object) override;
    QString getClassName() const override;
    QObject *object() const { return m_object; }

private:
    void parse(QObject *object);

    QObject *m_object = nullptr;
};
