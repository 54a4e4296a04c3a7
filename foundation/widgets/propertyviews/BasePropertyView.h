#pragma once

#include "foundation/AbstractMetaDescription.h"
#include "foundation/ConnectionHelper.h"
#include "foundation/SaturatedInt.h"

#include <QVariant>
#include <QWidget>

#include <limits>
#include <type_traits>

class QHBoxLayout;
class QPushButton;

// The editor of one property in a generated form. A view talks only to its description: every
// input writes the value into it, and the description's valueChanged shows the value again, so
// that several views of one property stay in step. The small default button beside the editor
// is blue while the value differs from the declared default and resets it when clicked.
class BasePropertyView : public QWidget
{
    Q_OBJECT
public:
    explicit BasePropertyView(AbstractMetaDescription *description, QWidget *parent = nullptr);

    AbstractMetaDescription *description() const { return m_description; }
    // Null when the property has no default, hides it or is read-only.
    QPushButton *defaultButton() const { return m_defaultButton; }

public slots:
    // The widget that takes the focus, for the tab order of the form.
    virtual QWidget *getEditor() const { return m_editor; }
    // Shows value in the editor without writing it back; the views call the base at the end.
    virtual void metaValueChanged(const QVariant &value);

protected:
    QHBoxLayout *editingLayout() const { return m_editingLayout; }
    // Puts the editor in front of the default button.
    void setEditor(QWidget *editor);
    virtual bool isDefaultValue(const QVariant &value) const;
    void setDefaultButtonChecked(bool isDefault);
    // A suffix or prefix as shown: translated in "Generic", or after "!-" taken as it stands.
    static QString translatedSuffixOrPrefix(const QString &text);

    // Limits and step of the description on a spin box or slider; without a declared limit
    // the range of an int applies.
    template<typename Box>
    void applyLimits(Box *box) const;
    // Prefix and suffix of the description on a spin box.
    template<typename Box>
    void applyAffixes(Box *box) const;

private:
    QHBoxLayout *m_editingLayout;
    AbstractMetaDescription *m_description;
    QPushButton *m_defaultButton = nullptr;
    ConnectionHelper m_connections;
    QWidget *m_editor = nullptr;
};

template<typename Box>
void BasePropertyView::applyLimits(Box *box) const
{
    // An int box takes a declared limit beyond its range as the end of the range.
    const auto limit = [](double value) {
        if constexpr (std::is_integral_v<decltype(box->minimum())>)
            return saturatedInt(value);
        else
            return value;
    };
    const AbstractMetaDescription *d = m_description;
    box->setMinimum(limit(d->hasMinimum() ? d->minimum() : std::numeric_limits<int>::min()));
    box->setMaximum(limit(d->hasMaximum() ? d->maximum() : std::numeric_limits<int>::max()));
    if (d->hasStep())
        box->setSingleStep(limit(d->step()));
}

template<typename Box>
void BasePropertyView::applyAffixes(Box *box) const
{
    box->setPrefix(translatedSuffixOrPrefix(m_description->prefix()));
    box->setSuffix(translatedSuffixOrPrefix(m_description->suffix()));
}
