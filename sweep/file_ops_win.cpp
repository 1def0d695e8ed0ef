#include "sweep/file_ops.h"

#include "sweep/error_text.h"
#include "sweep/win32.h"

#include <QDir>

#include <vector>

namespace {

bool isFolderAttribute(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}

QString absolutePath(const QString& path)
{
    const DWORD needed = GetFullPathNameW(asWide(path.utf16()), 0, nullptr, nullptr);
    if (needed == 0)
        return path;
    std::vector<wchar_t> units(needed);
    const DWORD written = GetFullPathNameW(asWide(path.utf16()), needed, units.data(), nullptr);
    if (written == 0 || written >= needed)
        return path;
    return QString::fromWCharArray(units.data(), written);
}

QString platformPath(const QString& path)
{
    if (!needsLongPathPrefix(int(path.size())) || path.startsWith(QLatin1String("\\\\?\\")))
        return path;
    return withLongPathPrefix(absolutePath(path));
}

bool fileExists(const QString& path)
{
    const DWORD attributes = GetFileAttributesW(asWide(platformPath(path).utf16()));
    return attributes != INVALID_FILE_ATTRIBUTES && !isFolderAttribute(attributes);
}

bool folderExists(QString path)
{
    // C: alone never counts: it names the current folder of drive C.
    if (path.size() < 3)
        return false;
    // C:\ becomes C:, which is read as the current folder of drive C.
    if (path.endsWith(QLatin1Char('\\')))
        path.chop(1);
    const DWORD attributes = GetFileAttributesW(asWide(platformPath(path).utf16()));
    return attributes != INVALID_FILE_ATTRIBUTES && isFolderAttribute(attributes);
}

bool fileTimeAndSize(const QString& path, TimeStamp* time, std::int64_t* size)
{
    const DWORD attributes = GetFileAttributesW(asWide(platformPath(path).utf16()));
    if (attributes == INVALID_FILE_ATTRIBUTES || isFolderAttribute(attributes))
        return false;

    // The open is given the path without the long-path prefix, so a path too
    // long for the plain form fails here, as it always has.
    const HANDLE file = CreateFileW(asWide(path.utf16()), 0, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;

    if (time != nullptr) {
        FILETIME creation;
        FILETIME lastAccess;
        FILETIME lastWrite;
        *time = GetFileTime(file, &creation, &lastAccess, &lastWrite)
            ? fileTimeToSeconds(lastWrite.dwLowDateTime, lastWrite.dwHighDateTime)
            : 0;
    }
    if (size != nullptr) {
        LARGE_INTEGER bytes;
        if (!GetFileSizeEx(file, &bytes)) {
            CloseHandle(file);
            return false;
        }
        *size = bytes.QuadPart;
    }
    CloseHandle(file);
    return true;
}

// One call deletes nearly every file. Only when it fails does the full
// sequence run, and its outcome is the one reported, so a read-only file
// still goes and a locked one still gives its own error.
QString deleteFile(const QString& path)
{
    const QString target = pathForFileCall(path);
    if (DeleteFileW(asWide(target.utf16())))
        return QString();

    // Gone already, or a folder: nothing to do, and the caller counts it.
    if (!fileExists(path))
        return QString();
    // Normal attributes are what let read-only, hidden and system files go;
    // whether they could be set shows in the deletion.
    SetFileAttributesW(asWide(target.utf16()), FILE_ATTRIBUTE_NORMAL);
    if (DeleteFileW(asWide(target.utf16())))
        return QString();

    const DWORD error = GetLastError();
    // Someone else deleted it between the test and the deletion.
    if (error == ERROR_FILE_NOT_FOUND)
        return QString();
    return deletionFailureText(error);
}

QString deletionFailureText(std::uint32_t error)
{
    return QStringLiteral("Unable to delete file; %1.").arg(toQString(systemErrorText(error)), 0, QLatin1Char(' '));
}

bool removeFolder(const QString& path)
{
    // QDir warns on standard error about an empty name; the tool prints
    // nothing there.
    if (path.isEmpty()) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    // Asked of the current folder, since a QDir on the path itself would
    // resolve a relative path against itself.
    // Qt gives a long path the \\?\ prefix itself.
    return QDir().rmdir(path);
}
