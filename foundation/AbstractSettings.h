#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class AbstractMetaDescriptor;

// A thing with named values that describes its properties: what the generated forms edit.
class AbstractSettings : public QObject
{
    Q_OBJECT
public:
    explicit AbstractSettings(QObject *parent = nullptr);

signals:
    void propertyChanged(const QString &name);

public slots:
    virtual AbstractMetaDescriptor *metaDescriptor() = 0;
    virtual QVariant getValue(const QString &name) const;
    virtual bool setValue(const QString &name, const QVariant &value) = 0;
    virtual bool containsProperty(const QString &name) const = 0;
};
