#include "SpecialPropertyView.h"

#include "foundation/widgets/MediaHelper.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

SpecialPropertyView::SpecialPropertyView(AbstractMetaDescription *description, QWidget *parent)
    : BasePropertyView(description, parent)
    , m_lineEdit(new QLineEdit)
{
    static const QString icon = QFileInfo::exists(QStringLiteral(":/Images/folder.svg"))
        ? QStringLiteral(":/Images/folder.svg")
        : QStringLiteral(":/icons/folder.svg");
    auto *button = new QPushButton(MediaHelper::icon(icon), QString());
    button->setMaximumSize(30, 30);
    setEditor(m_lineEdit);
    editingLayout()->insertWidget(0, button);
    connect(button, &QPushButton::clicked, this, &SpecialPropertyView::pick);
    connect(m_lineEdit, &QLineEdit::textEdited, description,
            [description](const QString &text) { description->setValue(text); });
    metaValueChanged(description->getValue());
}

void SpecialPropertyView::pick()
{
    const QString present = m_lineEdit->text();
    QString chosen;
    if (description()->specialType().contains(QLatin1String("PickFolder"), Qt::CaseInsensitive)) {
        chosen = QFileDialog::getExistingDirectory(
            this, QString(), QFileInfo(present).isDir() ? present : QString());
    } else {
        const QString extensions = description()->pickExtensions();
        const QString filter = extensions.isEmpty() || extensions == QLatin1String("*.*")
            ? tr("Любой файл") + QStringLiteral(" (*.*)")
            : QLatin1Char('(') + extensions + QLatin1Char(')');
        chosen = QFileDialog::getOpenFileName(
            this, QString(),
            QFileInfo::exists(present) ? QFileInfo(present).absolutePath() : QString(), filter);
    }
    if (!chosen.isEmpty())
        description()->setValue(chosen);
}

void SpecialPropertyView::metaValueChanged(const QVariant &value)
{
    if (m_lineEdit->text() != value.toString()) {
        const QSignalBlocker blocker(m_lineEdit);
        m_lineEdit->setText(value.toString());
    }
    BasePropertyView::metaValueChanged(value);
}
