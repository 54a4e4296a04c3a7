#pragma once

#include "AbstractMetaDescription.h"

#include <QMetaProperty>

// The description of one Qt property of a settings object, read from the class information
// that the class declares next to the property: for a property P the keys are P followed by a
// word, such as "ComPortDefault" or "ComPortMinimum".
class MetaDescription : public AbstractMetaDescription
{
    Q_OBJECT
public:
    explicit MetaDescription(QObject *parent = nullptr);

    // Builds the description of property number propertyIndex of object's meta-object.
    void set(int propertyIndex, QObject *object);

    int propertyIndex() const { return m_propertyIndex; }
    QObject *object() const { return m_object; }
    QMetaProperty property() const;

    QMetaEnum enumerator() const override;
    bool isEnumType() const override;

    // Reads the two numbers of "QPoint(1, 2)", "QPointF(1.5, 2)", "QSize(3, 4)" or "1,2".
    static bool parsePointOrSize(const QString &text, double &a, double &b);
    // A value as text in the form that setTextValue reads back.
    static QString valueText(const QVariant &value);
    // The class information of property followed by word, from the most derived class on.
    static bool declared(const QMetaObject *metaObject, const QString &property,
                         const QString &word, QString *text = nullptr);

public slots:
    bool setValue(const QVariant &value) override;
    QVariant getValue() const override;
    void setDefault() override;
    bool setTextValue(const QString &text) override;

private:
    bool declared(const QString &word, QString *text = nullptr) const;
    void parseDefault(const QString &raw, bool enumeration);
    bool callDefault(const QString &call, QString *result) const;
    void parseVisibility(const QString &rule);
    void parseSpecialType(const QString &text);

    int m_propertyIndex = -1;
    QObject *m_object = nullptr;
};
