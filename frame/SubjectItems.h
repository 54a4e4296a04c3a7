#pragma once

#include "data/TarveloUser.h"
#include "foundation/widgets/MediaHelper.h"

#include <QIcon>
#include <QString>

// What the lists of subjects show, alike in the page headers and on the subject page.
namespace SubjectItems {

// The key of the entry that stands for no subject; "unknown" is nobody's GUID, so selecting
// it leaves the model without a subject.
inline QString unknownKey()
{
    return QStringLiteral("unknown");
}

inline QIcon incognitoIcon()
{
    return MediaHelper::icon(QStringLiteral(":/resources/Images/incognito.svg"));
}

inline QIcon icon(const TarveloUser *user)
{
    switch (user->getGender()) {
    case TarveloUser::Male:
        return MediaHelper::icon(QStringLiteral(":/resources/Images/male.svg"));
    case TarveloUser::Female:
        return MediaHelper::icon(QStringLiteral(":/resources/Images/female.svg"));
    default:
        return MediaHelper::icon(QStringLiteral(":/resources/Images/account.svg"));
    }
}

} // namespace SubjectItems
