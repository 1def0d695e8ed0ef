#include "sweep/folder_pin.h"

#include "sweep/dir_listing.h"
#include "sweep/file_ops.h"

#include <utility>

namespace {

// Reading the folder's content is what makes the handle count for sharing: a
// handle that may only read attributes would not stop a deletion.
constexpr DWORD kPinAccess = FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES;
constexpr DWORD kPinSharing = FILE_SHARE_READ | FILE_SHARE_WRITE;

HANDLE openFolder(const QString& folder, DWORD flags)
{
    return CreateFileW(asWide(pathForFileCall(folder).utf16()), kPinAccess, kPinSharing, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

}

FolderPin::FolderPin(FolderPin&& other) noexcept
    : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)), isLink(other.isLink), isMissing(other.isMissing)
{
}

FolderPin::~FolderPin()
{
    release();
}

void FolderPin::release()
{
    if (handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
    handle = INVALID_HANDLE_VALUE;
}

FolderPin pinNamedFolder(const QString& folder)
{
    FolderPin pin;
    pin.handle = openFolder(folder, 0);
    return pin;
}

// Wine opens the target of a link even when asked for the link itself, so
// there the handle shows an ordinary folder and the listing's attributes
// remain the test.
FolderPin pinFoundFolder(const QString& folder)
{
    FolderPin pin;
    pin.handle = openFolder(folder, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!pin.isHeld()) {
        const DWORD error = GetLastError();
        pin.isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return pin;
    }
    FILE_ATTRIBUTE_TAG_INFO info = {};
    // A folder whose kind cannot be told is not entered.
    if (!GetFileInformationByHandleEx(pin.handle, FileAttributeTagInfo, &info, sizeof info)) {
        pin.release();
        return pin;
    }
    if (isLinkEntry(info.FileAttributes, info.ReparseTag)) {
        pin.release();
        pin.isLink = true;
    } else if ((info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        pin.release();
        pin.isMissing = true;
    }
    return pin;
}
