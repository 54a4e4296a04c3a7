#include "ColorPropertyView.h"

#include <QColorDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

ColorPropertyView::ColorPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_swatch(new QPushButton)
    , m_name(new QLabel)
{
    m_swatch->setFixedSize(20, 20);
    setEditor(m_swatch);
    editingLayout()->insertWidget(1, m_name);
    connect(m_swatch, &QPushButton::clicked, this, &ColorPropertyView::pick);
    metaValueChanged(description->getValue());
}

bool ColorPropertyView::withAlpha() const
{
    return description()->specialType().contains(QLatin1String("Alpha"), Qt::CaseInsensitive);
}

void ColorPropertyView::pick()
{
    auto *dialog = new QColorDialog(description()->getValue().value<QColor>(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::ShowAlphaChannel, withAlpha());
    AbstractMetaDescription *target = description();
    connect(dialog, &QColorDialog::colorSelected, target,
            [target](const QColor &colour) { target->setValue(colour); });
    dialog->open();
}

void ColorPropertyView::metaValueChanged(const QVariant &value)
{
    const QColor colour = value.value<QColor>();
    const QString name = colour.name(withAlpha() ? QColor::HexArgb : QColor::HexRgb);
    m_swatch->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid #999;")
                                .arg(colour.name(QColor::HexArgb)));
    m_name->setText(name);
    BasePropertyView::metaValueChanged(value);
}
