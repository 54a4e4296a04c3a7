#pragma once

#include <QColor>
#include <QWidget>

class NStackPanel;
class QGridLayout;
class QScrollArea;

// A scroll area around an NStackPanel, with an optional placeholder shown while it is empty.
class NScrollViewer : public QWidget
{
    Q_OBJECT
public:
    explicit NScrollViewer(Qt::Orientation orientation = Qt::Vertical, QWidget *parent = nullptr);

    void add(QWidget *widget);
    void remove(QWidget *widget);
    void clear();
    int count() const;
    QWidget *itemAt(int index) const;
    void setItemAlignment(QWidget *widget, Qt::Alignment alignment);
    void setItemAlignmentByIndex(int index, Qt::Alignment alignment);
    void setItemPadding(int left, int top, int right, int bottom);
    void setItemVisible(int index, bool visible);
    void setSpacing(int spacing);

    void setBackground(const QColor &background, bool darkPanel = false);
    void setBackgroundAndBorder(const QColor &background, unsigned char borderWidth,
                                const QColor &border, bool darkPanel);
    void setTransparentBackground(bool darkPanel);

    void setPlaceholderText(const QString &text, Qt::Alignment alignment = Qt::AlignCenter,
                            const QString &objectName = QString(), int margin = 0);
    void setPlaceholderWidget(QWidget *placeholder, Qt::Alignment alignment = Qt::AlignCenter);

    QScrollArea *scrollArea() const { return m_scrollArea; }
    NStackPanel *panel() const { return m_panel; }

public slots:
    void checkPlaceholder();

private:
    QScrollArea *m_scrollArea;
    NStackPanel *m_panel;
    QWidget *m_placeholder = nullptr;
    QGridLayout *m_grid;
};
