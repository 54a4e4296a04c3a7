#include "DoubleSpinBoxWithSuggestions.h"

#include <QContextMenuEvent>
#include <QMenu>

void DoubleSpinBoxWithSuggestions::setSuggestions(const QString &list)
{
    m_suggestions.clear();
    const QStringList pieces = list.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &piece : pieces) {
        bool ok = false;
        const double value = piece.trimmed().toDouble(&ok);
        if (ok)
            m_suggestions << value;
    }
}

void DoubleSpinBoxWithSuggestions::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_suggestions.isEmpty()) {
        QDoubleSpinBox::contextMenuEvent(event);
        return;
    }
    QMenu menu;
    for (const double value : qAsConst(m_suggestions))
        menu.addAction(textFromValue(value), this, [this, value] { setValue(value); });
    menu.exec(event->globalPos());
}
