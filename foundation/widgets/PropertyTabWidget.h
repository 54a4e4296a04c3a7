#pragma once

#include <QWidget>

class AbstractSettings;
class QTabWidget;

// The tabbed form of a settings object: a tab per category, each a PropertyListControl of that
// category. A tab shows only while its category has a visible property.
class PropertyTabWidget : public QWidget
{
    Q_OBJECT
public:
    explicit PropertyTabWidget(AbstractSettings *settings, QWidget *parent = nullptr);

    QTabWidget *getTabWidget() const { return m_tabs; }
    int tabCount() const;
    // Moves the tab of the category name (compared ignoring case) to index, and can make it the
    // current one.
    void moveTab(const QString &name, int index, bool select);

private:
    QTabWidget *m_tabs;
};
