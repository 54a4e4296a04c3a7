#pragma once

#include "AbstractMetaDescription.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QVariantMap>

class QXmlStreamReader;

// The descriptions of all properties of one settings object, in declaration order, and the
// file forms made from them (SettingsXmlCodec, SettingsJsonCodec). Only editable properties are
// stored.
class AbstractMetaDescriptor : public QObject
{
    Q_OBJECT
public:
    explicit AbstractMetaDescriptor(QObject *parent = nullptr);

    virtual void set(QObject *object) = 0;
    virtual QString getClassName() const = 0;

    int count() const { return m_properties.size(); }
    AbstractMetaDescription *at(int index) const;
    QList<AbstractMetaDescription *> getProperties() const { return m_properties; }
    // Exact name.
    AbstractMetaDescription *propertyByName(const QString &name) const;
    // The properties that the files hold: the editable ones, in declaration order.
    QList<AbstractMetaDescription *> storedProperties() const;
    // Exact name; null for a property that isn't stored.
    AbstractMetaDescription *storedByName(const QString &name) const;
    QMap<QString, QString> getPropertiesNameAndType() const;
    // These two find the property by name ignoring case; false if there is none.
    bool setValue(const QString &name, const QVariant &value);
    bool setTextValue(const QString &name, const QString &text);
    // Every editable property that declares a default goes back to it.
    void defaults();

    // The order of a form: by priority, then by display name. The files keep declaration order.
    QList<AbstractMetaDescription *> displayOrder() const;
    // The categories of the visible properties, in display order; a null one for "no category".
    QStringList categories() const;

    // XML form: the root element is named after the class, one child per stored property.
    QString saveToString() const;
    // Atomically; on failure error, when given, gets the system's reason.
    bool save(const QString &path, QString *error = nullptr) const;
    // Always true: what is missing, unknown or unconvertible leaves the property as it was.
    bool loadFromString(const QString &xml);
    // The bytes of a file, decoded as its prolog says; always true like loadFromString.
    bool loadFromBytes(const QByteArray &xml);
    // False only when the file can't be read.
    bool load(const QString &path);
    // Reads the stored properties of one object inside a larger document, up to the end of the
    // element endTag.
    void loadXmlContent(const QString &endTag, QXmlStreamReader &reader);

    // Several objects in one document under the root "Component", one element per object.
    static QString writeComponentsToString(const QList<AbstractMetaDescriptor *> &objects);
    static bool writeComponentsToFile(const QList<AbstractMetaDescriptor *> &objects,
                                      const QString &path);

    // JSON form: the stored values by property name.
    QVariantMap valueMap() const;
    void loadValueMap(const QVariantMap &values);
    QJsonObject saveToJson() const;
    bool saveToJsonFile(const QString &path, QString *error = nullptr) const;
    bool loadFromJsonFile(const QString &path);
    bool loadFromJson(const QByteArray &json);
    bool loadFromJson(const QJsonDocument &document);
    bool loadFromJson(const QJsonObject &object);

public slots:
    void clear();

protected:
    void append(AbstractMetaDescription *description);

private:
    QList<AbstractMetaDescription *> m_properties;
    QMap<QString, AbstractMetaDescription *> m_byName;
};
