#pragma once

#include "foundation/NTSettings.h"
#include "foundation/StringMap.h"

#include <QColor>
#include <QPoint>
#include <QSize>

// A settings class with the value types and declarations that the program's own two classes
// don't use: geometry, bytes, a map, a colour, a default computed by a call, a property that
// resets itself to something else than its declaration, and properties that are not stored;
// besides, the texts, limits and bindings an edit form takes from a declaration, some of them
// ones that don't convert.
class ExampleSettings : public NTSettings
{
    Q_OBJECT
    Q_PROPERTY(QPoint Origin READ getOrigin WRITE setOrigin RESET resetOrigin NOTIFY changedOrigin)
    Q_CLASSINFO("OriginEditable", "true")
    Q_CLASSINFO("OriginDefault", "QPoint(3, 4)")

    Q_PROPERTY(QPointF Anchor READ getAnchor WRITE setAnchor RESET resetAnchor NOTIFY changedAnchor)
    Q_CLASSINFO("AnchorEditable", "true")
    Q_CLASSINFO("AnchorDefault", "QPointF(0.5f, 1.25f)")

    Q_PROPERTY(QSize Frame READ getFrame WRITE setFrame RESET resetFrame NOTIFY changedFrame)
    Q_CLASSINFO("FrameEditable", "true")
    Q_CLASSINFO("FrameDefault", "QSize(640, 480)")

    Q_PROPERTY(QByteArray Blob READ getBlob WRITE setBlob RESET resetBlob NOTIFY changedBlob)
    Q_CLASSINFO("BlobEditable", "true")

    Q_PROPERTY(
        StringMap Labels READ getLabels WRITE setLabels RESET resetLabels NOTIFY changedLabels)
    Q_CLASSINFO("LabelsEditable", "true")

    Q_PROPERTY(QColor Tint READ getTint WRITE setTint RESET resetTint NOTIFY changedTint)
    Q_CLASSINFO("TintEditable", "true")
    Q_CLASSINFO("TintDefault", "Qt::red")

    Q_PROPERTY(QString Stamp READ getStamp WRITE setStamp RESET resetStamp NOTIFY changedStamp)
    Q_CLASSINFO("StampEditable", "true")
    Q_CLASSINFO("StampDefault", "makeStamp()")
    Q_CLASSINFO("StampDisplayName", "Zeta")
    Q_CLASSINFO("StampDescription", "What it is")
    Q_CLASSINFO("StampPlaceholder", "type here")
    Q_CLASSINFO("StampPrecision", "")
    Q_CLASSINFO("StampSpecialType", "PickFile:*.csv:*.txt")

    Q_PROPERTY(uchar Level READ getLevel WRITE setLevel RESET resetLevel NOTIFY changedLevel)
    Q_CLASSINFO("LevelEditable", "true")
    Q_CLASSINFO("LevelDefault", "200")
    Q_CLASSINFO("LevelPriority", "1")
    Q_CLASSINFO("LevelSuffix", "!-x")
    Q_CLASSINFO("LevelPrefix", "~")
    Q_CLASSINFO("LevelCategory", "Numbers")
    Q_CLASSINFO("LevelMinimum", "QSize(10, 20)")
    Q_CLASSINFO("LevelMaximum", "lots")
    Q_CLASSINFO("LevelVisibleBound", "!Flag;Mode:a:b;Other")
    Q_CLASSINFO("LevelVisibleBinded", "Ignored:true")

    // Its own reset gives 7 whatever the declaration says.
    Q_PROPERTY(
        int Counter READ getCounter WRITE setCounter RESET resetCounter NOTIFY changedCounter)
    Q_CLASSINFO("CounterEditable", "true")
    Q_CLASSINFO("CounterDefault", "5")
    Q_CLASSINFO("CounterReadOnly", "")
    Q_CLASSINFO("CounterVisibleBinded", "Flag")

    // Declared in every other respect, but without Editable=true it is never stored.
    Q_PROPERTY(QString Draft READ getDraft WRITE setDraft RESET resetDraft NOTIFY changedDraft)
    Q_CLASSINFO("DraftEditable", "True")
    Q_CLASSINFO("DraftDefault", "\"draft\"")

    // No class information at all.
    Q_PROPERTY(
        QString Scratch READ getScratch WRITE setScratch RESET resetScratch NOTIFY changedScratch)

public:
    explicit ExampleSettings(const QString &path = QString(), QObject *parent = nullptr)
        : NTSettings(path, true, parent, XML)
    {
        applyDeclaredDefaults();
    }

    Q_INVOKABLE QString makeStamp() const { return QStringLiteral("computed"); }

    int getCounter() const { return m_counter; }
    void setCounter(int value)
    {
        if (m_counter == value)
            return;
        m_counter = value;
        emit changedCounter(value);
        changedProperty(QStringLiteral("Counter"));
    }
    void resetCounter() { setCounter(7); }

signals:
    void changedOrigin(const QPoint &value);
    void changedAnchor(const QPointF &value);
    void changedFrame(const QSize &value);
    void changedBlob(const QByteArray &value);
    void changedLabels(const StringMap &value);
    void changedTint(const QColor &value);
    void changedStamp(const QString &value);
    void changedLevel(uchar value);
    void changedCounter(int value);
    void changedDraft(const QString &value);
    void changedScratch(const QString &value);

public:
    // getX, setX and resetX of the properties declared above.
    NT_SETTING(QPoint, Origin)
    NT_SETTING(QPointF, Anchor)
    NT_SETTING(QSize, Frame)
    NT_SETTING(QByteArray, Blob)
    NT_SETTING(StringMap, Labels)
    NT_SETTING(QColor, Tint)
    NT_SETTING(QString, Stamp)
    NT_SETTING(uchar, Level)
    NT_SETTING(QString, Draft)
    NT_SETTING(QString, Scratch)

private:
    int m_counter = 0;
};
