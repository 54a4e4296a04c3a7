#pragma once

#include <QList>
#include <QWidget>

class QBoxLayout;

// A box of widgets packed at its start: every item is aligned to the top (or left), and the last
// one takes up the slack.
class NStackPanel : public QWidget
{
    Q_OBJECT
public:
    explicit NStackPanel(Qt::Orientation orientation = Qt::Vertical, QWidget *parent = nullptr);

    void add(QWidget *widget);
    NStackPanel &operator<<(QWidget *widget);
    // The widget goes back to the caller, unparented; a widget that isn't an item is left alone.
    void remove(QWidget *widget);
    // The items belong to the panel: they are deleted.
    void clear();
    int count() const { return m_items.size(); }
    QWidget *at(int index) const;

    void setItemAlignment(QWidget *widget, Qt::Alignment alignment);
    void setItemAlignmentByIndex(int index, Qt::Alignment alignment);
    void setItemPadding(int left, int top, int right, int bottom);
    void setPadding(int padding);
    void setSpacing(int spacing);
    void setOrientation(Qt::Orientation orientation);
    Qt::Orientation orientation() const { return m_orientation; }

private:
    void realign();

    Qt::Orientation m_orientation;
    QBoxLayout *m_layout;
    QList<QWidget *> m_items;
};
