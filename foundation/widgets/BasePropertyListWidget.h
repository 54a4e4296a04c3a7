#pragma once

#include "foundation/ConnectionHelper.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

class BasePropertyView;
class QGridLayout;

// One property of a form: its label and its editor, in one row of the form's grid.
struct PropertyWidgetInfo
{
    QString name;
    QWidget *header = nullptr;
    BasePropertyView *view = nullptr;
    int row = -1;
};

// What every generated form offers its caller: the rows it made, and the focus among them.
class BasePropertyListWidget : public QWidget
{
    Q_OBJECT
public:
    explicit BasePropertyListWidget(QWidget *parent = nullptr);

    // An empty info (no view) when there is no such row; names are compared ignoring case.
    PropertyWidgetInfo getWidgetInfo(int index) const;
    PropertyWidgetInfo getWidgetInfo(const QString &name) const;
    void setFocusAt(const PropertyWidgetInfo &info);
    void setFocusAtFirst();
    // Puts the focus into the first editor whenever the form is shown.
    void setAutoFocus(bool autoFocus) { m_autoFocus = autoFocus; }

protected:
    void showEvent(QShowEvent *event) override;
    QGridLayout *outerGrid() const { return m_outerGrid; }

    QList<PropertyWidgetInfo> m_infos;
    ConnectionHelper m_connections;

private:
    QGridLayout *m_outerGrid;
    bool m_autoFocus = false;
};
