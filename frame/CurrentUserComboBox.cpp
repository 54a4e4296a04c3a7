#include "CurrentUserComboBox.h"

#include "AddUserButton.h"
#include "SubjectItems.h"
#include "app/TarveloModel.h"
#include "data/TarveloUser.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>

CurrentUserComboBox::CurrentUserComboBox(TarveloModel *model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    if (!model)
        return;
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(new AddUserButton(model), 0);
    m_comboBox = new QComboBox;
    // Room for a usual full name, whenever the subject is added; a longer one is cut.
    m_comboBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_comboBox->setMinimumContentsLength(24);
    layout->addWidget(m_comboBox, 100);

    // Refills run with signals blocked: only the operator's own choice reaches the model.
    connect(m_comboBox, qOverload<int>(&QComboBox::currentIndexChanged), model,
            [this] { m_model->selectUser(m_comboBox->currentData().toString()); });
    // The current subject is shown again after every refill, so a reload of the list never
    // shows "not selected" while sessions are recorded for someone.
    m_connections << connect(model, &TarveloModel::usersUpdated, this, &CurrentUserComboBox::refill)
                  << connect(model, &TarveloModel::userSelected, this,
                             &CurrentUserComboBox::refill);
    refill();
}

void CurrentUserComboBox::refill()
{
    const QSignalBlocker blocker(m_comboBox);
    m_comboBox->clear();
    m_comboBox->addItem(SubjectItems::incognitoIcon(), tr("Не выбран"), SubjectItems::unknownKey());
    const QList<TarveloUser *> users = m_model->users();
    for (const TarveloUser *user : users)
        m_comboBox->addItem(SubjectItems::icon(user), user->fullName(false), user->getGUID());
    // The last entry of the current subject's GUID, or "not selected" at index 0.
    const QString guid = m_model->currentUser() ? m_model->currentUser()->getGUID() : QString();
    int index = m_comboBox->count() - 1;
    while (index > 0 && m_comboBox->itemData(index).toString() != guid)
        --index;
    m_comboBox->setCurrentIndex(index);
}
