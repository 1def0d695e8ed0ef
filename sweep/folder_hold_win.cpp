#include "sweep/folder_hold_win.h"

#include "sweep/dir_listing_win.h"
#include "sweep/file_ops.h"

#include <winternl.h>

namespace {

// Reading the folder's content is what makes the handle count for sharing: a
// handle that may only read attributes would not stop a deletion.
constexpr DWORD kHoldAccess = FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES;
constexpr DWORD kHoldSharing = FILE_SHARE_READ | FILE_SHARE_WRITE;
// Removal opens the folder as the platform's own removal does.
constexpr DWORD kRemovalSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr ULONG kFolderOptions = FILE_DIRECTORY_FILE | FILE_OPEN_FOR_BACKUP_INTENT;

// The folder's number on its volume. The handles compared are opened in the
// same held parent, or by the path just swept, so they are on one volume;
// asking for the volume too costs Wine a look at every drive.
bool readFolderId(HANDLE folder, LONGLONG& id, DWORD& error)
{
    IO_STATUS_BLOCK status = {};
    FILE_INTERNAL_INFORMATION info = {};
    const NTSTATUS result = NtQueryInformationFile(folder, &status, &info, sizeof info, FileInternalInformation);
    error = NT_SUCCESS(result) ? static_cast<DWORD>(ERROR_SUCCESS) : RtlNtStatusToDosError(result);
    id = info.IndexNumber.QuadPart;
    return NT_SUCCESS(result);
}

// A folder whose kind cannot be told counts as a link: it is neither entered
// nor removed.
bool showsLink(HANDLE folder)
{
    FILE_ATTRIBUTE_TAG_INFO info = {};
    if (!GetFileInformationByHandleEx(folder, FileAttributeTagInfo, &info, sizeof info))
        return true;
    return isLinkEntry(info.FileAttributes, info.ReparseTag);
}

OwnedHandle openForRemoval(HANDLE parent, const QString& name, const QString& path, DWORD& error)
{
    if (parent != INVALID_HANDLE_VALUE)
        return openInFolder(parent, name, DELETE | FILE_READ_ATTRIBUTES, kRemovalSharing, kFolderOptions, error);
    OwnedHandle opened;
    opened.handle = CreateFileW(asWide(platformPath(path).utf16()), DELETE | FILE_READ_ATTRIBUTES, kRemovalSharing,
                                nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_OPEN_NO_RECALL,
                                nullptr);
    error = opened.isOpen() ? ERROR_SUCCESS : GetLastError();
    return opened;
}

}

FolderHold holdNamedFolder(const QString& folder)
{
    FolderHold hold;
    hold.folder.handle = CreateFileW(asWide(platformPath(folder).utf16()), kHoldAccess, kHoldSharing, nullptr,
                                     OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_NO_RECALL, nullptr);
    if (hold.isHeld())
        return hold;
    hold.error = GetLastError();
    hold.isMissing = isGoneError(hold.error);
    return hold;
}

// Wine opens the target of a link even when asked for the link itself, so
// there the handle shows an ordinary folder and the listing's attributes
// remain the test.
FolderHold holdFoundFolder(HANDLE parent, const QString& name)
{
    FolderHold hold;
    hold.folder = openInFolder(parent, name, kHoldAccess, kHoldSharing, kFolderOptions, hold.error);
    if (!hold.isHeld()) {
        hold.isMissing = isGoneError(hold.error) || hold.error == ERROR_DIRECTORY;
        return hold;
    }
    FILE_ATTRIBUTE_TAG_INFO info = {};
    // A folder whose kind cannot be told is not entered.
    if (!GetFileInformationByHandleEx(hold.handle(), FileAttributeTagInfo, &info, sizeof info)) {
        hold.error = GetLastError();
        hold.folder.close();
        return hold;
    }
    if (isLinkEntry(info.FileAttributes, info.ReparseTag)) {
        hold.folder.close();
        hold.isLink = true;
    }
    return hold;
}

// The hold shares no deletion, so it must go before the folder can be opened
// for deletion; the folder's identity, read while it was held, tells whether
// the name still stands for it.
Removal removeHeldFolder(FolderHold& hold, HANDLE parent, const QString& name, const QString& path, DWORD& error)
{
    LONGLONG held = 0;
    if (!readFolderId(hold.handle(), held, error)) {
        hold.folder.close();
        return Removal::Failed;
    }
    hold.folder.close();
    OwnedHandle folder = openForRemoval(parent, name, path, error);
    if (!folder.isOpen())
        return isGoneError(error) ? Removal::Removed : Removal::Failed;
    LONGLONG found = 0;
    DWORD idError = ERROR_SUCCESS;
    if (!readFolderId(folder.handle, found, idError) || found != held || showsLink(folder.handle))
        return Removal::NotTheSame;
    error = requestDeletion(folder.handle, 0);
    return error == ERROR_SUCCESS ? Removal::Removed : Removal::Failed;
}
