#pragma once

#include "foundation/NTSettings.h"

// A subject: the person who takes the tests. Stored as User.xml in a folder of its own under
// the records folder, named by folderName(), which also holds that person's sessions. The
// file, the defaults and the edit form all come from the declaration below.
class TarveloUser : public NTSettings
{
    Q_OBJECT
    Q_PROPERTY(QString LastName READ getLastName WRITE setLastName RESET resetLastName NOTIFY
                   changedLastName)
    Q_CLASSINFO("LastNameNoDefault", "true")
    Q_CLASSINFO("LastNameEditable", "true")
    Q_CLASSINFO("LastNameDefault", "\"\"")

    Q_PROPERTY(QString FirstName READ getFirstName WRITE setFirstName RESET resetFirstName NOTIFY
                   changedFirstName)
    Q_CLASSINFO("FirstNameNoDefault", "true")
    Q_CLASSINFO("FirstNameEditable", "true")
    Q_CLASSINFO("FirstNameDefault", "\"\"")

    Q_PROPERTY(QString MiddleName READ getMiddleName WRITE setMiddleName RESET resetMiddleName
                   NOTIFY changedMiddleName)
    Q_CLASSINFO("MiddleNameNoDefault", "true")
    Q_CLASSINFO("MiddleNameEditable", "true")
    Q_CLASSINFO("MiddleNameDefault", "\"\"")

    // A birth date part of 0 means unknown. The year's maximum is a fixed value of the format.
    Q_PROPERTY(
        int DOBYear READ getDOBYear WRITE setDOBYear RESET resetDOBYear NOTIFY changedDOBYear)
    Q_CLASSINFO("DOBYearNoDefault", "true")
    Q_CLASSINFO("DOBYearEditable", "true")
    Q_CLASSINFO("DOBYearDefault", "0")
    Q_CLASSINFO("DOBYearMinimum", "0")
    Q_CLASSINFO("DOBYearMaximum", "5432")
    Q_CLASSINFO("DOBYearStep", "1")

    Q_PROPERTY(
        int DOBMonth READ getDOBMonth WRITE setDOBMonth RESET resetDOBMonth NOTIFY changedDOBMonth)
    Q_CLASSINFO("DOBMonthNoDefault", "true")
    Q_CLASSINFO("DOBMonthEditable", "true")
    Q_CLASSINFO("DOBMonthDefault", "0")
    Q_CLASSINFO("DOBMonthMinimum", "0")
    Q_CLASSINFO("DOBMonthMaximum", "12")
    Q_CLASSINFO("DOBMonthStep", "1")

    Q_PROPERTY(int DOBDay READ getDOBDay WRITE setDOBDay RESET resetDOBDay NOTIFY changedDOBDay)
    Q_CLASSINFO("DOBDayNoDefault", "true")
    Q_CLASSINFO("DOBDayEditable", "true")
    Q_CLASSINFO("DOBDayDefault", "0")
    Q_CLASSINFO("DOBDayMinimum", "0")
    Q_CLASSINFO("DOBDayMaximum", "31")
    Q_CLASSINFO("DOBDayStep", "1")

    Q_PROPERTY(Genders Gender READ getGender WRITE setGender RESET resetGender NOTIFY changedGender)
    Q_CLASSINFO("GenderNoDefault", "true")
    Q_CLASSINFO("GenderEditable", "true")
    Q_CLASSINFO("GenderDefault", "Genders::Undefined")

    Q_PROPERTY(QString GUID READ getGUID WRITE setGUID RESET resetGUID NOTIFY changedGUID)
    Q_CLASSINFO("GUIDNoDefault", "true")
    Q_CLASSINFO("GUIDEditable", "true")
    Q_CLASSINFO("GUIDDefault", "\"\"")

    Q_PROPERTY(
        QString Comment READ getComment WRITE setComment RESET resetComment NOTIFY changedComment)
    Q_CLASSINFO("CommentNoDefault", "true")
    Q_CLASSINFO("CommentEditable", "true")
    Q_CLASSINFO("CommentDefault", "\"\"")

public:
    enum Genders { Undefined = 0, Male = 1, Female = 2 };
    Q_ENUM(Genders)

    // No file yet: the path comes with setFilepath or saveIn.
    explicit TarveloUser(QObject *parent = nullptr);

    // The name file of every subject folder.
    static QString fileName();

    // The trimmed non-empty name parts joined by blanks; with withGuid the GUID in brackets
    // follows, which is the subject's folder name and keeps namesakes apart.
    QString fullName(bool withGuid) const;
    // The name of a new subject's folder: fullName(true) made safe as a folder name, the
    // GUID kept whole (FileUtilities::safeFolderName). Whatever the name holds, the folder
    // stands directly in the records folder.
    QString folderName() const;
    // A new GUID: 36 lower-case hexadecimal characters with hyphens, no braces.
    void createGuid();
    // Takes over every field of other that differs, the birth date within its limits.
    void copyFrom(const TarveloUser *other);
    // Files the subject: creates its folder under recordsFolder and writes User.xml there.
    void saveIn(const QString &recordsFolder);
    // Writes User.xml into the given folder, creating it if needed.
    void saveInFolder(const QString &folder);

signals:
    void changedLastName(const QString &value);
    void changedFirstName(const QString &value);
    void changedMiddleName(const QString &value);
    void changedDOBYear(int value);
    void changedDOBMonth(int value);
    void changedDOBDay(int value);
    void changedGender(TarveloUser::Genders value);
    void changedGUID(const QString &value);
    void changedComment(const QString &value);

public:
    // getX, setX and resetX of the properties declared above.
    NT_SETTING(QString, LastName)
    NT_SETTING(QString, FirstName)
    NT_SETTING(QString, MiddleName)
    NT_INT_SETTING(DOBYear)
    NT_INT_SETTING(DOBMonth)
    NT_INT_SETTING(DOBDay)
    NT_SETTING(Genders, Gender)
    NT_SETTING(QString, GUID)
    NT_SETTING(QString, Comment)
};
