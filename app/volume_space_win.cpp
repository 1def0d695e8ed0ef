#include "app/volume_space.h"

#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/win32.h"
#include "text/path_normalize.h"

// GetDiskFreeSpaceExW takes any folder, and measures the volume that folder is
// on; a share's path needs the trailing backslash.
bool readFolderSpace(const QString& folder, std::uint64_t& freeBytes, std::uint64_t& totalBytes)
{
    const QString path = pathForFileCall(folderPrefix(absolutePath(folder)));
    ULARGE_INTEGER freeToCaller = {};
    ULARGE_INTEGER total = {};
    ULARGE_INTEGER totalFree = {};
    if (!GetDiskFreeSpaceExW(asWide(path.utf16()), &freeToCaller, &total, &totalFree))
        return false;
    freeBytes = freeToCaller.QuadPart;
    totalBytes = total.QuadPart;
    return true;
}

QString volumeKey(const QString& folder)
{
    const QString volume = volumePathOf(folder);
    return volume.isEmpty() ? folder : volume;
}
