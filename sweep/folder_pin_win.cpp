#include "sweep/folder_pin.h"

#include "sweep/dir_listing.h"
#include "sweep/entry_ops.h"
#include "sweep/file_ops.h"

#include <winternl.h>

#include <utility>

namespace {

// Reading the folder's content is what makes the handle count for sharing: a
// handle that may only read attributes would not stop a deletion.
constexpr DWORD kPinAccess = FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES;
constexpr DWORD kPinSharing = FILE_SHARE_READ | FILE_SHARE_WRITE;

// Asks for what the handle can tell and do; an open that cannot be had fails
// with the reason.
void holdFoundFolder(FolderPin& pin, HANDLE parent, const QString& name, ACCESS_MASK access)
{
    pin.handle = openInFolder(parent, name, access, kPinSharing, FILE_DIRECTORY_FILE | FILE_OPEN_FOR_BACKUP_INTENT,
                              pin.error);
}

}

FolderPin::FolderPin(FolderPin&& other) noexcept
{
    *this = std::move(other);
}

FolderPin& FolderPin::operator=(FolderPin&& other) noexcept
{
    if (this != &other) {
        release();
        handle = std::exchange(other.handle, INVALID_HANDLE_VALUE);
        isLink = other.isLink;
        isMissing = other.isMissing;
        error = other.error;
    }
    return *this;
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

FolderPin pinNamedFolder(const QString& folder, bool forRemoval)
{
    FolderPin pin;
    pin.handle = CreateFileW(asWide(platformPath(folder).utf16()), forRemoval ? kPinAccess | DELETE : kPinAccess,
                             kPinSharing, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (pin.isHeld())
        return pin;
    pin.error = GetLastError();
    pin.isMissing = isGoneError(pin.error);
    return pin;
}

// Wine opens the target of a link even when asked for the link itself, so
// there the handle shows an ordinary folder and the listing's attributes
// remain the test.
FolderPin pinFoundFolder(HANDLE parent, const QString& name, bool forRemoval)
{
    FolderPin pin;
    holdFoundFolder(pin, parent, name, forRemoval ? kPinAccess | DELETE : kPinAccess);
    // Deletion may be denied where listing is not: the folder is still swept,
    // and its removal then fails with that reason.
    if (forRemoval && pin.error == ERROR_ACCESS_DENIED)
        holdFoundFolder(pin, parent, name, kPinAccess);
    if (!pin.isHeld()) {
        pin.isMissing = isGoneError(pin.error) || pin.error == ERROR_DIRECTORY;
        return pin;
    }
    FILE_ATTRIBUTE_TAG_INFO info = {};
    // A folder whose kind cannot be told is not entered.
    if (!GetFileInformationByHandleEx(pin.handle, FileAttributeTagInfo, &info, sizeof info)) {
        pin.error = GetLastError();
        pin.release();
        return pin;
    }
    if (isLinkEntry(info.FileAttributes, info.ReparseTag)) {
        pin.release();
        pin.isLink = true;
    }
    return pin;
}

DWORD removePinnedFolder(FolderPin& pin)
{
    FILE_DISPOSITION_INFO info = {};
    info.DeleteFile = TRUE;
    const DWORD error = SetFileInformationByHandle(pin.handle, FileDispositionInfo, &info, sizeof info)
        ? ERROR_SUCCESS
        : GetLastError();
    pin.release();
    return error;
}
