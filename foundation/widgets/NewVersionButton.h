#pragma once

#include <QWidget>

class NewVersionChecker;
class QPushButton;

// A small blue button that shows up while the version service offers a newer version, reads
// that version and opens its download link when clicked.
class NewVersionButton : public QWidget
{
    Q_OBJECT
public:
    // An empty style keeps the default one.
    explicit NewVersionButton(const QString &preliminaryText, const QString &style,
                              QWidget *parent = nullptr);

    void setPreliminaryText(const QString &text);
    void setButtonStyle(const QString &style);
    NewVersionChecker *checker() const { return m_checker; }

private:
    NewVersionChecker *m_checker;
    QPushButton *m_button;
};
