#include "sweep/file_ops.h"

#include "sweep/error_text.h"
#include "sweep/win32.h"

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
    return pathForFileCall(absolutePath(path));
}

bool fileExists(const QString& path)
{
    const DWORD attributes = GetFileAttributesW(asWide(platformPath(path).utf16()));
    return attributes != INVALID_FILE_ATTRIBUTES && !isFolderAttribute(attributes);
}

bool folderExists(QString path)
{
    std::uint32_t error = ERROR_SUCCESS;
    return folderExists(path, error);
}

bool folderExists(QString path, std::uint32_t& error)
{
    error = ERROR_SUCCESS;
    // C: alone never counts: it names the current folder of drive C.
    if (path.size() < 3)
        return false;
    // C:\ becomes C:, which is read as the current folder of drive C.
    if (path.endsWith(QLatin1Char('\\')))
        path.chop(1);
    const DWORD attributes = GetFileAttributesW(asWide(platformPath(path).utf16()));
    if (attributes == INVALID_FILE_ATTRIBUTES)
        error = GetLastError();
    return attributes != INVALID_FILE_ATTRIBUTES && isFolderAttribute(attributes);
}

QString deletionFailureText(std::uint32_t error)
{
    return withFullStop(QStringLiteral("Unable to delete file; %1").arg(toQString(systemErrorText(error)), 0,
                                                                         QLatin1Char(' ')));
}
