#include "PropertyListControl.h"

#include "foundation/AbstractSettings.h"
#include "foundation/MetaDescriptor.h"
#include "foundation/TextHelper.h"
#include "foundation/widgets/MediaHelper.h"
#include "propertyviews/BoolPropertyView.h"
#include "propertyviews/ColorPropertyView.h"
#include "propertyviews/DatePropertyView.h"
#include "propertyviews/DoublePropertyView.h"
#include "propertyviews/DualDoubleSpinBox.h"
#include "propertyviews/EnumPropertyView.h"
#include "propertyviews/EnumStringListPropertyView.h"
#include "propertyviews/IntPropertyView.h"
#include "propertyviews/MultilinePropertyView.h"
#include "propertyviews/SliderPropertyView.h"
#include "propertyviews/SpecialPropertyView.h"
#include "propertyviews/StringPropertyView.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>

#include <algorithm>

namespace {
QString translated(const QString &text)
{
    return QCoreApplication::translate("Generic", text.toUtf8().constData());
}
} // namespace

PropertyListControl::PropertyListControl(AbstractSettings *settings, const QString &filter,
                                         ViewMode mode, QWidget *parent)
    : BasePropertyListWidget(parent)
    , m_filter(filter)
    , m_mode(mode)
{
    // A description set of the form's own, so that the form may go before the object does.
    auto *descriptor = new MetaDescriptor(this);
    descriptor->set(settings);
    m_descriptor = descriptor;
    buildFrame();
    if (mode == ViewMode_Property) {
        addPropertyToLayout(descriptor->propertyByName(filter), m_grid);
    } else if (mode == ViewMode_Category) {
        addCategory(filter, false);
    } else {
        const QStringList categories = descriptor->categories();
        for (const QString &category : categories)
            addCategory(category, categories.size() >= 2);
    }
    finishGrid();
    bindVisibility();
}

PropertyListControl::PropertyListControl(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyListWidget(parent)
    , m_filter(description ? description->name() : QString())
    , m_mode(ViewMode_Property)
{
    buildFrame();
    addPropertyToLayout(description, m_grid);
    finishGrid();
}

void PropertyListControl::buildFrame()
{
    m_inner = new QWidget;
    m_grid = new QGridLayout(m_inner);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(m_mode == ViewMode_Property ? 0 : 4);
    if (m_mode == ViewMode_Property || m_mode == ViewMode_AllPlain) {
        outerGrid()->addWidget(m_inner, 0, 0);
        return;
    }
    auto *scrollArea = new QScrollArea;
    scrollArea->setWidgetResizable(true);
    scrollArea->setMinimumSize(30, 20);
    scrollArea->setContentsMargins(0, 0, 0, 0);
    scrollArea->setStyleSheet(
        QStringLiteral("QScrollArea { background: transparent; border: 0; } "
                       "QScrollArea > QWidget > QWidget { background: transparent; }"));
    scrollArea->setWidget(m_inner);
    outerGrid()->addWidget(scrollArea, 0, 0);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void PropertyListControl::addCategory(const QString &category, bool withLabel)
{
    if (withLabel) {
        auto *label = new QLabel(categoryTitle(category));
        label->setContentsMargins(0, 10, 0, 0);
        label->setObjectName(QStringLiteral("propertyCategoryLabel"));
        label->setStyleSheet(QStringLiteral("font-weight: bold"));
        const int row = m_grid->rowCount();
        m_grid->addWidget(label, row, 0);
        m_categoryRows.insert(category, row);
    }
    const QList<AbstractMetaDescription *> ordered = m_descriptor->displayOrder();
    for (AbstractMetaDescription *description : ordered) {
        if (description->visible() && description->category() == category)
            addPropertyToLayout(description, m_grid);
    }
}

QString PropertyListControl::categoryTitle(const QString &category)
{
    return category.isEmpty() ? QCoreApplication::translate("Generic", "Other")
                              : translated(category);
}

int PropertyListControl::addPropertyToLayout(AbstractMetaDescription *description,
                                             QGridLayout *grid)
{
    if (!description || !grid)
        return -1;
    auto *label = new QLabel(translated(description->displayName()));
    label->setContentsMargins(0, 0, 0, 0);
    label->setObjectName(QStringLiteral("propertyHeaderLabel"));
    const QMap<QString, QString> extras = description->extras();
    if (extras.contains(QStringLiteral("Description")))
        label->setToolTip(translated(extras.value(QStringLiteral("Description"))));
    QWidget *header = label;
    if (!description->icon().isEmpty()) {
        header = new QWidget;
        auto *layout = new QHBoxLayout(header);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *icon = new QLabel;
        icon->setPixmap(MediaHelper::icon(description->icon()).pixmap(16, 16));
        layout->addWidget(icon);
        layout->addWidget(label, 100, Qt::AlignLeft);
    }

    int span = 1;
    BasePropertyView *view = getPropertyView(description, &span);
    view->setContentsMargins(0, 0, 5, 0);
    if (description->readOnly())
        view->setEnabled(false);
    const int row = grid->rowCount();
    grid->addWidget(header, row, 0);
    grid->addWidget(view, row, 1, 1, span, Qt::AlignLeft);
    m_infos.append({description->name(), header, view, row});
    return row;
}

void PropertyListControl::finishGrid()
{
    m_grid->setRowStretch(m_grid->rowCount(), 100);
    m_grid->setColumnStretch(2, 100);
}

BasePropertyView *PropertyListControl::getPropertyView(AbstractMetaDescription *description,
                                                       int *span)
{
    *span = 1;
    const QString special = description->specialType();
    const auto specialIs = [&special](const char *word) {
        return special.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    };
    const auto specialHas = [&special](const char *word) {
        return special.contains(QLatin1String(word), Qt::CaseInsensitive);
    };
    const QString type = description->type();
    const auto typeHas = [&type](const char *word) {
        return type.contains(QLatin1String(word));
    };

    if (description->hasSpecialType()) {
        if (specialHas("PickFile") || specialHas("PickFolder")) {
            *span = 2;
            return new SpecialPropertyView(description);
        }
        if (specialHas("Multiline")) {
            *span = 2;
            return new MultilinePropertyView(description);
        }
        if (specialIs("Slider"))
            return new SliderPropertyView(description);
        if (specialIs("EnumStringList")
            || (type == QLatin1String("QString") && specialIs("StringList")))
            return new EnumStringListPropertyView(description);
        if (specialIs("Range"))
            return new DualDoubleSpinBox(description, DualDoubleSpinBox::DualMode_Range);
    }
    if (description->isEnumType())
        return new EnumPropertyView(description);
    // "QPointF" contains "QPoint", so a QPointF takes the point view as well.
    if (typeHas("QPoint"))
        return new DualDoubleSpinBox(description, DualDoubleSpinBox::DualMode_Point);
    if (typeHas("bool"))
        return new BoolPropertyView(description);
    if (typeHas("int"))
        return new IntPropertyView(description);
    if (typeHas("QDate"))
        return new DatePropertyView(description);
    if (typeHas("double") || typeHas("float"))
        return new DoublePropertyView(description);
    if (typeHas("QColor"))
        return new ColorPropertyView(description);
    *span = 2;
    return new StringPropertyView(description);
}

bool PropertyListControl::checkVisibility(const AbstractMetaDescription *source,
                                          const QString &condition)
{
    const QString value = source ? source->getValue().toString() : QString();
    const auto holds = [&value](const QString &part) {
        return part.startsWith(QLatin1Char('!')) ? value != part.mid(1) : value == part;
    };
    const QStringList parts = TextHelper::multisplit(
        condition, {QStringLiteral("|"), QStringLiteral("&&")}, Qt::SkipEmptyParts);
    if (parts.size() < 2)
        return holds(parts.value(0));
    const bool any = condition.indexOf(QLatin1Char('|')) >= 1;
    bool result = !any;
    for (const QString &part : parts)
        result = any ? result || holds(part) : result && holds(part);
    return result;
}

void PropertyListControl::bindVisibility()
{
    for (const PropertyWidgetInfo &info : qAsConst(m_infos)) {
        const QMap<QString, QString> bound = info.view->description()->visibleBound();
        if (bound.isEmpty()) {
            if (m_mode == ViewMode_Category)
                ++m_unboundVisible;
            continue;
        }
        for (auto it = bound.cbegin(); it != bound.cend(); ++it) {
            if (const AbstractMetaDescription *source = m_descriptor->propertyByName(it.key()))
                m_connections << connect(source, &AbstractMetaDescription::valueChanged, this,
                                         &PropertyListControl::evaluateVisibility,
                                         Qt::UniqueConnection);
        }
    }
    if (m_mode == ViewMode_Category)
        connect(this, &PropertyListControl::manageCategoryVisibilityChanged, this,
                &PropertyListControl::evaluateVisibility);
    evaluateVisibility();
}

void PropertyListControl::setManageCategoryVisibility(bool manage)
{
    if (m_manageCategoryVisibility == manage)
        return;
    m_manageCategoryVisibility = manage;
    emit manageCategoryVisibilityChanged();
}

void PropertyListControl::evaluateVisibility()
{
    if (m_mode == ViewMode_Property || (m_mode == ViewMode_Category && !m_manageCategoryVisibility))
        return;
    m_boundVisible = 0;
    for (const PropertyWidgetInfo &info : qAsConst(m_infos)) {
        AbstractMetaDescription *description = info.view->description();
        const QMap<QString, QString> bound = description->visibleBound();
        if (bound.isEmpty())
            continue;
        bool visible = true;
        for (auto it = bound.cbegin(); it != bound.cend(); ++it)
            visible =
                visible && checkVisibility(m_descriptor->propertyByName(it.key()), it.value());
        description->setCurrentlyVisible(visible);
        m_boundVisible += visible ? 1 : 0;
        setRowVisible(info.row, visible);
    }
    // A category label stays only over a category with something visible in it.
    for (auto it = m_categoryRows.cbegin(); it != m_categoryRows.cend(); ++it) {
        const bool shown = std::any_of(m_infos.cbegin(), m_infos.cend(), [&it](const auto &info) {
            const AbstractMetaDescription *description = info.view->description();
            return description->category() == it.key() && description->currentlyVisible();
        });
        setRowVisible(it.value(), shown);
    }
    if (m_mode == ViewMode_Category) {
        updateGeometry();
        emit propertyVisibilityChanged(visibleProperties());
    }
    reorderTabOrder();
}

void PropertyListControl::setRowVisible(int row, bool visible)
{
    for (int column = 0; column < 2; ++column) {
        QLayoutItem *item = m_grid->itemAtPosition(row, column);
        if (item && item->widget())
            item->widget()->setVisible(visible);
    }
}

// Hidden rows leave the chain, and editors that take the focus only by a click (the growing
// line edits) join it, so that Tab walks the visible form from top to bottom.
void PropertyListControl::reorderTabOrder()
{
    QWidget *previous = nullptr;
    for (const PropertyWidgetInfo &info : qAsConst(m_infos)) {
        QWidget *editor = info.view->getEditor();
        if (!editor || info.view->isHidden())
            continue;
        if (editor->focusPolicy() == Qt::ClickFocus)
            editor->setFocusPolicy(Qt::StrongFocus);
        if (previous)
            QWidget::setTabOrder(previous, editor);
        previous = editor;
    }
}

QSize PropertyListControl::sizeHint() const
{
    return m_inner->sizeHint();
}
