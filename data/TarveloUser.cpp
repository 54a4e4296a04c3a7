#include "TarveloUser.h"

#include "foundation/FileUtilities.h"

#include <QStringList>
#include <QUuid>

namespace {

// Sources for the translation files. The form labels each property with its name translated
// in "Generic"; the genders show by their keys in "Genders".
[[maybe_unused]] const char *const translationSources[] = {
    //: Фамилия / Last name
    QT_TRANSLATE_NOOP("Generic", "LastName"),
    //: Имя / First name
    QT_TRANSLATE_NOOP("Generic", "FirstName"),
    //: Отчество / Middle name
    QT_TRANSLATE_NOOP("Generic", "MiddleName"),
    //: Год / Year
    QT_TRANSLATE_NOOP("Generic", "DOBYear"),
    //: Месяц / Month
    QT_TRANSLATE_NOOP("Generic", "DOBMonth"),
    //: День / Day
    QT_TRANSLATE_NOOP("Generic", "DOBDay"),
    //: Пол / Gender
    QT_TRANSLATE_NOOP("Generic", "Gender"),
    //: Идентификатор / GUID
    QT_TRANSLATE_NOOP("Generic", "GUID"),
    //: Комментарий / Comment
    QT_TRANSLATE_NOOP("Generic", "Comment"),
    //: Не выбран / Undefined
    QT_TRANSLATE_NOOP("Genders", "Undefined"),
    //: Мужской / Male
    QT_TRANSLATE_NOOP("Genders", "Male"),
    //: Женский / Female
    QT_TRANSLATE_NOOP("Genders", "Female"),
};

} // namespace

TarveloUser::TarveloUser(QObject *parent)
    : NTSettings(QString(), true, parent, XML)
{
    qRegisterMetaType<Genders>(); // so that the file shows the gender by its key
    applyDeclaredDefaults();
}

QString TarveloUser::fileName()
{
    return QStringLiteral("User.xml");
}

QString TarveloUser::fullName(bool withGuid) const
{
    QStringList parts;
    for (const QString &part : {m_LastName, m_FirstName, m_MiddleName}) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            parts << trimmed;
    }
    const QString guid = m_GUID.trimmed();
    if (withGuid && !guid.isEmpty())
        parts << QLatin1Char('(') + guid + QLatin1Char(')');
    return parts.join(QLatin1Char(' '));
}

QString TarveloUser::folderName() const
{
    const QString name = fullName(false);
    const QString guid = m_GUID.trimmed();
    if (guid.isEmpty())
        return FileUtilities::safeFolderName(name);
    const QString bracketed = QLatin1Char('(') + guid + QLatin1Char(')');
    return FileUtilities::safeFolderName(name,
                                         name.isEmpty() ? bracketed : QLatin1Char(' ') + bracketed);
}

void TarveloUser::createGuid()
{
    setGUID(QUuid::createUuid().toString(QUuid::WithoutBraces));
}

void TarveloUser::copyFrom(const TarveloUser *other)
{
    if (!other)
        return;
    setFirstName(other->getFirstName());
    setLastName(other->getLastName());
    setMiddleName(other->getMiddleName());
    // The day isn't checked against the month: each part only keeps to its own limits.
    setDOBDay(m_DOBDayLimits.bounded(other->getDOBDay()));
    setDOBMonth(m_DOBMonthLimits.bounded(other->getDOBMonth()));
    setDOBYear(m_DOBYearLimits.bounded(other->getDOBYear()));
    setGender(other->getGender());
    setGUID(other->getGUID());
    setComment(other->getComment());
}

void TarveloUser::saveIn(const QString &recordsFolder)
{
    saveInFolder(FileUtilities::FolderSlash(recordsFolder) + folderName());
}

void TarveloUser::saveInFolder(const QString &folder)
{
    const QString target = FileUtilities::FolderSlash(folder);
    FileUtilities::createIfNotExists(target);
    setFilepath(target + fileName());
    save();
}
