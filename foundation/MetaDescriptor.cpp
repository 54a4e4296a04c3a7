#include "MetaDescriptor.h"

#include "MetaDescription.h"

#include <QMetaProperty>

MetaDescriptor::MetaDescriptor(QObject *parent)
    : AbstractMetaDescriptor(parent)
{
}

void MetaDescriptor::set(QObject *object)
{
    clear();
    m_object = object;
    parse(object);
}

void MetaDescriptor::setItem(QMetaProperty *item)
{
    if (m_item == item)
        return;
    m_item = item;
    emit itemChanged(item);
}

QString MetaDescriptor::getClassName() const
{
    return m_object ? QString::fromLatin1(m_object->metaObject()->className()) : QString();
}

void MetaDescriptor::parse(QObject *object)
{
    if (!object)
        return;
    const QMetaObject *meta = object->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (qstricmp(property.name(), "objectName") == 0 || !property.isWritable())
            continue;
        auto *description = new MetaDescription(this);
        description->set(i, object);
        append(description);
    }
}
