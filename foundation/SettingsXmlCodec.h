#pragma once

#include <QList>
#include <QString>

class AbstractMetaDescriptor;
class QXmlStreamReader;

// The XML form of settings objects: a root element named after the class with one child per
// stored property, or several objects under the root "Component". The reader takes every
// element named like a stored property wherever it stands and passes over the rest, so
// hand-edited and older files still load.
class SettingsXmlCodec
{
public:
    static QString write(const AbstractMetaDescriptor &object);
    // One element per object, named after its class; values in their plain text form.
    static QString writeComponents(const QList<AbstractMetaDescriptor *> &objects);

    // Reads up to the end of the element endTag, or to the end of the document when endTag is
    // empty. Points and sizes are read from their "x;y" form only with pointsAndSizes.
    static void read(AbstractMetaDescriptor &object, QXmlStreamReader &reader,
                     const QString &endTag, bool pointsAndSizes);
};
