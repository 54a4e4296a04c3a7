#pragma once

#include "AbstractSettings.h"
#include "NTIntLimits.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVariantMap>

class AbstractMetaDescription;
class MetaDescriptor;

// The base of every settings-like object: its persistent fields are Qt properties with class
// information, and from that declaration alone come its file forms, defaults, limits and the
// generated edit form. A subclass declares nothing but its properties (see NT_SETTING below).
// Every reported change saves the whole file when autosave is on, except while reloading.
class NTSettings : public AbstractSettings
{
    Q_OBJECT
public:
    enum NTSettingsFormat { XML = 0, JSON = 1 };
    Q_ENUM(NTSettingsFormat)

    explicit NTSettings(const QString &filePath = QString(), bool autoSave = true,
                        QObject *parent = nullptr, NTSettingsFormat format = XML);

    QString getFilepath() const { return m_filePath; }
    // Creates the folder of a non-empty path; an empty path is not taken.
    void setFilepath(const QString &path);
    NTSettingsFormat getFormat() const { return m_format; }
    void setFormat(NTSettingsFormat format) { m_format = format; }
    bool getAutoSave() const { return m_autoSave; }
    void setAutoSave(bool autoSave) { m_autoSave = autoSave; }

    // Reads the file over the present values without saving; false only with no path. A file
    // that is missing or broken leaves what it doesn't hold as it was.
    bool reload();
    // Writes the whole object (when there is a path) and reports saved in any case. The first
    // failure after a good write is announced on WriteFailures; false when the write failed.
    bool save();
    void loadDefaults();

    QString saveToString() const;
    bool loadFromXMLString(const QString &xml);
    QJsonObject saveToJson() const;
    QString saveToJsonString(QJsonDocument::JsonFormat format) const;
    QString saveToJsonByteArray() const;
    bool loadFromJson(const QByteArray &json);
    bool loadFromJson(const QJsonDocument &document);
    bool loadFromJson(const QJsonObject &object);
    bool loadFromJson(const QString &json);
    QVariantMap getQVariantMap() const;
    void loadFromQVariantMap(const QVariantMap &values);

    QStringList getPropertiesNames() const;
    // Ignores case.
    AbstractMetaDescription *getPropertyByName(const QString &name) const;
    QString getTextValue(const QString &name) const;
    bool setTextValue(const QString &name, const QString &text);
    QString getClassName() const;

    QJsonObject getPropertyCapabilities(const AbstractMetaDescription *description) const;
    QString getPropertyCapabilitiesString(const AbstractMetaDescription *description) const;
    // Of all properties, or with all false of those a form shows and edits.
    QJsonArray getAllCapabilitiesJson(bool all) const;
    QVariantList getAllCapabilities(bool all) const;

    // Several objects in one XML file under the root "Component".
    static bool saveListFromString(const QList<NTSettings *> &objects, const QString &path);
    // Puts item into the list (add) or takes every copy out; true if the list changed.
    static bool toogleItemInStringList(QStringList &list, const QString &item, bool add);

public slots:
    AbstractMetaDescriptor *metaDescriptor() override;
    // Exact name.
    QVariant getValue(const QString &name) const override;
    // Ignores case.
    bool setValue(const QString &name, const QVariant &value) override;
    // Exact name.
    bool containsProperty(const QString &name) const override;

signals:
    void reloaded();
    void saved();
    void filePathChanged();

protected slots:
    void changedProperty(const QString &name);

protected:
    // Gives every property its declared default without saving; subclasses call it at the end
    // of their constructors, when their properties exist.
    void applyDeclaredDefaults();
    // The reset of a declared property: back to the default of its declaration.
    void resetToDeclaredDefault(const QString &name);

private:
    MetaDescriptor *descriptor() const;

    bool m_loading = false;
    bool m_saveFailing = false;
    bool m_autoSave;
    NTSettingsFormat m_format;
    QString m_filePath;
    mutable MetaDescriptor *m_descriptor = nullptr;
};

// Getter, setter and reset of a stored property Name, in the pattern getName, setName and
// resetName. The class itself declares the Q_PROPERTY with its class information and the
// signal changedName(value), so the declaration stays the one place that tells what is stored.
// The macro ends in the private section, where it keeps the value.
// clang-format off
#define NT_SETTING(Type, Name)                                                                     \
public:                                                                                            \
    Type get##Name() const { return m_##Name; }                                                    \
    void set##Name(const Type &value)                                                              \
    {                                                                                              \
        if (m_##Name == value)                                                                     \
            return;                                                                                \
        m_##Name = value;                                                                          \
        emit changed##Name(value);                                                                 \
        changedProperty(QStringLiteral(#Name));                                                    \
    }                                                                                              \
    void reset##Name() { resetToDeclaredDefault(QStringLiteral(#Name)); }                          \
                                                                                                   \
private:                                                                                           \
    Type m_##Name {};

// An integer setting also keeps its declared default and limits, as getNameLimits().
#define NT_INT_SETTING(Name)                                                                       \
    NT_SETTING(int, Name)                                                                          \
public:                                                                                            \
    const NTIntLimits &get##Name##Limits() const { return m_##Name##Limits; }                      \
                                                                                                   \
private:                                                                                           \
    const NTIntLimits m_##Name##Limits = NTIntLimits::declared(staticMetaObject, #Name);
// clang-format on
