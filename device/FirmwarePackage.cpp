#include "FirmwarePackage.h"

#include <QBuffer>
#include <QDir>

#include <memory>
#include <unzip.h>

namespace FirmwarePackage {

namespace {
bool fits(const QString &fileName, const QString &pattern, const QString &role)
{
    if (fileName.contains(pattern))
        return true;
#ifdef Q_OS_WIN
    Q_UNUSED(role)
    return false;
#else
    // A tool built for this system has no ".exe".
    return pattern == ToolPattern && fileName == role;
#endif
}

// The archive is read from memory: minizip's file functions over a QBuffer.
voidpf ZCALLBACK openBuffer(voidpf opaque, const void *, int)
{
    return opaque;
}

uLong ZCALLBACK readBuffer(voidpf, voidpf stream, void *bytes, uLong size)
{
    const qint64 read = static_cast<QBuffer *>(stream)->read(static_cast<char *>(bytes), size);
    return read < 0 ? 0 : uLong(read);
}

uLong ZCALLBACK writeBuffer(voidpf, voidpf, const void *, uLong)
{
    return 0;
}

ZPOS64_T ZCALLBACK tellBuffer(voidpf, voidpf stream)
{
    return ZPOS64_T(static_cast<QBuffer *>(stream)->pos());
}

long ZCALLBACK seekBuffer(voidpf, voidpf stream, ZPOS64_T offset, int origin)
{
    auto *buffer = static_cast<QBuffer *>(stream);
    qint64 base = 0;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR)
        base = buffer->pos();
    else if (origin == ZLIB_FILEFUNC_SEEK_END)
        base = buffer->size();
    return buffer->seek(base + qint64(offset)) ? 0 : -1;
}

int ZCALLBACK closeBuffer(voidpf, voidpf)
{
    return 0;
}

int ZCALLBACK bufferError(voidpf, voidpf)
{
    return 0;
}

struct Entry
{
    QString name;
    bool symbolicLink = false;
    QFile::Permissions permissions;
};

// The Unix permissions an archive made on Unix carries; none otherwise.
QFile::Permissions permissionsOf(uint mode)
{
    static const struct
    {
        uint bit;
        QFile::Permissions permissions;
    } table[] = {
        {0400, QFile::ReadOwner | QFile::ReadUser},
        {0200, QFile::WriteOwner | QFile::WriteUser},
        {0100, QFile::ExeOwner | QFile::ExeUser},
        {040, QFile::ReadGroup},
        {020, QFile::WriteGroup},
        {010, QFile::ExeGroup},
        {04, QFile::ReadOther},
        {02, QFile::WriteOther},
        {01, QFile::ExeOther},
    };
    QFile::Permissions permissions;
    for (const auto &row : table) {
        if (mode & row.bit)
            permissions |= row.permissions;
    }
    return permissions;
}

bool readEntry(unzFile zip, Entry *entry)
{
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
        return false;
    QByteArray name(int(info.size_filename), '\0');
    if (unzGetCurrentFileInfo64(zip, &info, name.data(), uLong(name.size()), nullptr, 0, nullptr, 0)
        != UNZ_OK)
        return false;
    // Flag bit 11 marks a UTF-8 name; older tools wrote a code page, whose ASCII part is safe.
    entry->name = info.flag & 0x800 ? QString::fromUtf8(name) : QString::fromLatin1(name);
    const bool madeOnUnix = info.version >> 8 == 3;
    const uint mode = madeOnUnix ? uint(info.external_fa >> 16) : 0;
    entry->symbolicLink = (mode & 0170000) == 0120000;
    entry->permissions = permissionsOf(mode);
    return true;
}

// True when an entry of that name, unpacked into the folder, stays inside it.
bool staysInside(const QString &folder, const QString &entryName)
{
    // Backslashes count as separators everywhere: a package made on Windows may use them.
    const QString name = QString(entryName).replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (QDir::isAbsolutePath(name))
        return false;
    const QString root = QDir::cleanPath(QDir(folder).absolutePath());
    const QString target = QDir::cleanPath(root + QLatin1Char('/') + name);
    return target == root || target.startsWith(root + QLatin1Char('/'));
}

bool extractEntry(unzFile zip, const QString &path)
{
    if (unzOpenCurrentFile(zip) != UNZ_OK)
        return false;
    QFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    char chunk[16384];
    int read = 0;
    while (written && (read = unzReadCurrentFile(zip, chunk, sizeof chunk)) > 0)
        written = file.write(chunk, read) == read;
    // Closing checks the CRC.
    return unzCloseCurrentFile(zip) == UNZ_OK && written && read == 0;
}
} // namespace

QMap<QString, QString> requiredFiles(int type, const QString &tool)
{
    QMap<QString, QString> required;
    if (type == Esp32) {
        required.insert(QStringLiteral(".ino.bin"), Role::Ino);
        required.insert(QStringLiteral(".ino.bootloader.bin"), Role::Bootloader);
        required.insert(QStringLiteral("boot_app0.bin"), Role::BootApp);
        required.insert(QStringLiteral("ino.partitions.bin"), Role::Partitions);
    } else if (type == AtMega2560) {
        required.insert(QStringLiteral(".conf"), Role::Conf);
        required.insert(QStringLiteral(".hex"), Role::Hex);
    }
    if (tool.contains(SelfPrefix))
        required.insert(ToolPattern, QString(tool).remove(SelfPrefix));
    return required;
}

UnpackResult unpack(const QByteArray &archive, const QString &folder)
{
    QBuffer buffer;
    buffer.setData(archive);
    buffer.open(QIODevice::ReadOnly);
    zlib_filefunc64_def io {openBuffer, readBuffer,  writeBuffer, tellBuffer,
                            seekBuffer, closeBuffer, bufferError, &buffer};
    const std::unique_ptr<void, int (*)(unzFile)> zip(unzOpen2_64("package", &io), unzClose);
    if (!zip)
        return {Unpacked::Unreadable, QString()};
    // Every name is checked before the first byte is written: a refused package leaves nothing.
    Entry entry;
    for (int at = unzGoToFirstFile(zip.get()); at == UNZ_OK; at = unzGoToNextFile(zip.get())) {
        if (!readEntry(zip.get(), &entry))
            return {Unpacked::Unreadable, QString()};
        if (entry.symbolicLink || !staysInside(folder, entry.name))
            return {Unpacked::Refused, entry.name};
    }
    const QDir root(folder);
    for (int at = unzGoToFirstFile(zip.get()); at == UNZ_OK; at = unzGoToNextFile(zip.get())) {
        readEntry(zip.get(), &entry);
        const QString path =
            root.absoluteFilePath(entry.name.replace(QLatin1Char('\\'), QLatin1Char('/')));
        if (entry.name.endsWith(QLatin1Char('/'))) {
            root.mkpath(path);
            continue;
        }
        root.mkpath(QFileInfo(path).absolutePath());
        if (!extractEntry(zip.get(), path))
            return {Unpacked::Unreadable, entry.name};
        if (entry.permissions)
            QFile::setPermissions(path, entry.permissions);
    }
    return {Unpacked::Done, QString()};
}

QMap<QString, QString> findFiles(const QString &folder, const QMap<QString, QString> &required)
{
    const QDir dir(folder);
    QStringList candidates = dir.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
    QMap<QString, QString> found;
    for (auto it = required.cbegin(); it != required.cend(); ++it) {
        for (int i = 0; i < candidates.size(); ++i) {
            if (fits(candidates.at(i), it.key(), it.value())) {
                found.insert(it.value(), dir.absoluteFilePath(candidates.takeAt(i)));
                break;
            }
        }
    }
    return found;
}

} // namespace FirmwarePackage
