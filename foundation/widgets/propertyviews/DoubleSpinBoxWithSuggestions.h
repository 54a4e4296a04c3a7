#pragma once

#include <QDoubleSpinBox>
#include <QList>

// A double spin box whose context menu offers a few values to pick, when it has any.
class DoubleSpinBoxWithSuggestions : public QDoubleSpinBox
{
    Q_OBJECT
public:
    using QDoubleSpinBox::QDoubleSpinBox;

    // From a comma-separated list such as "0.5, 1, 2"; what doesn't convert is left out.
    void setSuggestions(const QString &list);
    QList<double> suggestions() const { return m_suggestions; }

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    QList<double> m_suggestions;
};
