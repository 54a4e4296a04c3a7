#pragma once

#include <QString>
#include <QStringList>

class QByteArray;

// File and folder helpers that all the data code stands on. Failures show as false or as
// empty results; nothing here raises a message.
class FileUtilities
{
public:
    static QString FolderSlash(const QString &path);
    static QString filename(const QString &path, bool withSuffix);
    static bool createIfNotExists(const QString &path);
    static bool clearFolder(const QString &path, bool leaveRemoved);
    static QStringList getFilesOfType(const QString &folder, const QString &type, bool recursive,
                                      bool fullPaths);
    static QStringList getFilesOfTypes(const QString &folder, const QStringList &types,
                                       bool recursive, bool fullPaths);
    static QStringList GetSubfolders(const QString &path, bool fullPaths, bool recursive);

    // A folder name made of name and keptEnd that every file system takes and that stays where
    // it is put: path separators, control characters and the characters Windows refuses
    // (< > : " | ? *) become "_", and so do a leading dot (no "." or "..", no hidden folder) and
    // a trailing dot or blank (Windows drops those). name is then cut, at whole characters, to
    // fit the 255 bytes of a file name in UTF-8; keptEnd stays whole. Never empty.
    static QString safeFolderName(const QString &name, const QString &keptEnd = QString());

    // Replaces the file in one step: the data goes to a temporary file beside it, which is
    // renamed over the target only when everything was written. A crash or a full disk
    // leaves the old file whole. On failure error, when given, gets the system's reason.
    static bool writeAtomically(const QString &path, const QByteArray &data,
                                QString *error = nullptr);

    // Empty when a file can be made in the folder, else the system's reason why not.
    static QString writableFolderProblem(const QString &folder);

    // A file size limit (RLIMIT_FSIZE) ends the process with SIGXFSZ by default; ignored, it
    // turns into a write error that the writer sees and reports. A no-op where no such
    // signal exists.
    static void ignoreFileSizeSignal();

    // Why a name can't be the base name of a file here, in words for the operator; empty when
    // it can. The same name must work on Windows and on Linux, and in the program's own
    // key=value files, so refused are: the characters of RefusedNameCharacters, control
    // characters and line breaks, "..", a point at the start (a hidden file) or at the end,
    // blanks at either end, the device names Windows reserves, and more than MaxNameBytes
    // bytes of UTF-8.
    static QString fileNameProblem(const QString &name);
    static constexpr char RefusedNameCharacters[] = ";=/\\<>:\"|?*";
    static constexpr int MaxNameBytes = 200;
};
