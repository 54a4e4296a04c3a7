#pragma once

#include <QMap>
#include <QMetaEnum>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

// What a settings class declares about one of its properties: type, default, limits, category,
// visibility and the texts shown beside the value. The file forms and the generated forms work
// only through these objects; MetaDescription fills them from a Qt property.
class AbstractMetaDescription : public QObject
{
    Q_OBJECT
public:
    explicit AbstractMetaDescription(QObject *parent = nullptr);

    virtual QMetaEnum enumerator() const = 0;
    virtual bool isEnumType() const = 0;

    QString name() const { return m_name; }
    QString type() const { return m_type; }
    // The type as the file forms name it, compared ignoring case: "QSize", "uchar", ...
    bool hasType(const char *typeName) const;
    // A byte-sized number, "uchar" or "char": stored by its value, as QVariant::toString would
    // give the character.
    bool isByteNumber() const;
    int typeId() const { return m_typeId; }
    QString displayName() const { return m_displayName; }
    QString defaultValue() const { return m_defaultValue; }
    // For a default known only at run time, such as the languages that exist.
    void setDefaultValue(const QString &value)
    {
        m_defaultValue = value;
        m_hasDefault = true;
    }
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    double step() const { return m_step; }
    bool hasDefault() const { return m_hasDefault; }
    bool hasMinimum() const { return m_hasMinimum; }
    bool hasMaximum() const { return m_hasMaximum; }
    bool hasStep() const { return m_hasStep; }
    // Source property name to the value it must show for this one to be visible.
    QMap<QString, QString> visibleBound() const { return m_visibleBound; }
    QString category() const { return m_category; }
    QString specialType() const { return m_specialType; }
    bool hasSpecialType() const { return m_hasSpecialType; }
    QString pickOption() const { return m_pickOption; }
    QString pickExtensions() const { return m_pickExtensions; }
    QString suffix() const { return m_suffix; }
    QString prefix() const { return m_prefix; }
    QStringList enums() const { return m_enums; }
    void setEnums(const QStringList &options) { m_enums = options; }
    QString icon() const { return m_icon; }
    // "Description", "Placeholder", "Precision" and "Suggestions", where declared.
    QMap<QString, QString> extras() const { return m_extras; }
    int priority() const { return m_priority; }
    bool showDefault() const { return m_showDefault; }
    bool readOnly() const { return m_readOnly; }
    // Only editable properties are stored in files.
    bool editable() const { return m_editable; }
    bool visible() const { return m_visible; }
    // Whether the form shows the property at present, by its visibility rule.
    bool currentlyVisible() const { return m_currentlyVisible; }
    void setCurrentlyVisible(bool visible) { m_currentlyVisible = visible; }

    // The order of a form: lower priority first, then by display name.
    static bool displaysBefore(const AbstractMetaDescription *a, const AbstractMetaDescription *b);

    // Reads the first number of a limit such as "10", "2.5f" or "QSize(10, 20)"; the target is
    // touched only when the text converts.
    static bool assignDouble(double &target, const QString &text);

signals:
    void valueChanged(const QVariant &value);

public slots:
    virtual bool setValue(const QVariant &value) = 0;
    virtual QVariant getValue() const = 0;
    virtual void setDefault() = 0;
    virtual void valueChangedSlot();
    virtual bool setTextValue(const QString &text);

protected:
    QString m_defaultValue;
    double m_minimum = 0;
    double m_maximum = 0;
    double m_step = 0;
    QString m_type;
    QString m_displayName;
    QMap<QString, QString> m_visibleBound;
    QString m_name;
    QString m_category;
    QString m_pickOption;
    QString m_pickExtensions;
    QString m_specialType;
    QString m_suffix;
    QString m_prefix;
    QStringList m_enums;
    QString m_icon;
    QMap<QString, QString> m_extras;
    int m_typeId = 0;
    int m_priority = 0x7FFFFFFF;
    bool m_showDefault = true;
    bool m_readOnly = false;
    bool m_editable = false;
    bool m_visible = false;
    bool m_currentlyVisible = true;
    bool m_hasMinimum = false;
    bool m_hasMaximum = false;
    bool m_hasDefault = false;
    bool m_hasStep = false;
    bool m_hasSpecialType = false;
};
