#pragma once

#include "BasePropertyListWidget.h"

#include <QHash>

class AbstractMetaDescription;
class AbstractMetaDescriptor;
class AbstractSettings;

// An editing form generated from a settings object's property descriptions, with no interface
// code of its own per class: a label and an editor for each visible property, grouped under
// category labels when there are two categories or more. Every input goes into the object at
// once; there is no Apply. A property with a visibility rule (ComPort while AutoSearch is off)
// shows and hides as its sources change.
class PropertyListControl : public BasePropertyListWidget
{
    Q_OBJECT
public:
    enum ViewMode {
        ViewMode_All,      // every category, in a scroll area
        ViewMode_Category, // the category named by the filter, in a scroll area
        ViewMode_Property, // the one property named by the filter
        ViewMode_AllPlain  // every category, without a scroll area
    };
    Q_ENUM(ViewMode)

    PropertyListControl(AbstractSettings *settings, const QString &filter = QString(),
                        ViewMode mode = ViewMode_All, QWidget *parent = nullptr);
    // A form of the one property.
    explicit PropertyListControl(AbstractMetaDescription *description, QWidget *parent = nullptr);

    // Null for the form of one property.
    AbstractMetaDescriptor *descriptor() const { return m_descriptor; }
    int visibleProperties() const { return m_unboundVisible + m_boundVisible; }
    // In ViewMode_Category, visibility rules are applied only while this is on.
    bool manageCategoryVisibility() const { return m_manageCategoryVisibility; }
    void setManageCategoryVisibility(bool manage);

    QSize sizeHint() const override;

    // A category's name as shown: translated in "Generic", "Other" for properties without one.
    static QString categoryTitle(const QString &category);
    // The editor for a description, and the number of grid columns it takes.
    static BasePropertyView *getPropertyView(AbstractMetaDescription *description, int *span);
    // Whether source's value meets condition: a value, "!value", or values joined by "|" (any)
    // or "&&" (all); a "|" anywhere makes the whole list "any".
    static bool checkVisibility(const AbstractMetaDescription *source, const QString &condition);

signals:
    void propertyVisibilityChanged(int visibleProperties);
    void manageCategoryVisibilityChanged();

private:
    void buildFrame();
    void addCategory(const QString &category, bool withLabel);
    int addPropertyToLayout(AbstractMetaDescription *description, QGridLayout *grid);
    void finishGrid();
    void bindVisibility();
    void evaluateVisibility();
    void setRowVisible(int row, bool visible);
    void reorderTabOrder();

    AbstractMetaDescriptor *m_descriptor = nullptr;
    QString m_filter;
    QHash<QString, int> m_categoryRows;
    ViewMode m_mode;
    QGridLayout *m_grid = nullptr;
    QWidget *m_inner = nullptr;
    bool m_manageCategoryVisibility = false;
    int m_boundVisible = 0;
    int m_unboundVisible = 0;
};
