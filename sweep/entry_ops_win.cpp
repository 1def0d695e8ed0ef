#include "sweep/entry_ops_win.h"

#include "sweep/listing_rules.h"

namespace {

bool setAttributes(HANDLE file, DWORD attributes)
{
    // Zero times leave the file's times as they are.
    FILE_BASIC_INFO info = {};
    info.FileAttributes = attributes;
    return SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof info) != FALSE;
}

// Read before the deletion request: once a name is marked for deletion, the
// system no longer counts it.
bool hasOtherNames(HANDLE file)
{
    FILE_STANDARD_INFO info = {};
    return GetFileInformationByHandleEx(file, FileStandardInfo, &info, sizeof info) && info.NumberOfLinks > 1;
}

// The read-only attribute belongs to the file, not to the name: reset through
// the handle, it is put back unless the file is gone with its only name, so a
// file kept, or reached through another name outside the tree, keeps it.
DWORD deleteReadOnly(FileToDelete& file, DeletionSupport& support)
{
    const HANDLE handle = file.file.handle;
    const bool otherNames = hasOtherNames(handle);
    if (!setAttributes(handle, FILE_ATTRIBUTE_NORMAL))
        return GetLastError();
    const DWORD error = requestDeletion(handle, support);
    if (error != ERROR_SUCCESS || otherNames)
        setAttributes(handle, file.attributes);
    return error;
}

TimeStamp timeOf(const FILE_BASIC_INFO& info)
{
    return entryTime(info.LastWriteTime.LowPart, static_cast<std::uint32_t>(info.LastWriteTime.HighPart),
                     info.CreationTime.LowPart, static_cast<std::uint32_t>(info.CreationTime.HighPart));
}

}

// Opened as the platform's own deletion opens a file: for deletion, sharing
// everything, so a file that another program holds without sharing deletion
// fails here with the same sharing violation. A read-only file whose
// attributes may not be changed is still opened, and deleted where deletion
// alone is allowed.
bool openFileToDelete(HANDLE folder, const QString& name, bool listedReadOnly, FileToDelete& file)
{
    constexpr ULONG kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    file.file = openInFolderAskingLess(folder, name, DELETE | FILE_READ_ATTRIBUTES,
                                       listedReadOnly ? FILE_WRITE_ATTRIBUTES : 0, kSharing, FILE_NON_DIRECTORY_FILE,
                                       file.error);
    if (!file.file.isOpen())
        return false;
    FILE_BASIC_INFO info = {};
    if (!GetFileInformationByHandleEx(file.file.handle, FileBasicInfo, &info, sizeof info)) {
        file.error = GetLastError();
        file.file.close();
        return false;
    }
    file.time = timeOf(info);
    file.changed = fileTimeToSeconds(info.ChangeTime.LowPart, static_cast<std::uint32_t>(info.ChangeTime.HighPart));
    file.attributes = info.FileAttributes;
    return true;
}

// With POSIX semantics a read-only file goes with no attribute to reset.
// Where the volume refuses that, or accepts it and ignores the flag, the
// attribute is reset through the handle instead.
DWORD deleteOpenedFile(FileToDelete& file, DeletionSupport& support)
{
    const bool readOnly = (file.attributes & FILE_ATTRIBUTE_READONLY) != 0;
    bool resetReadOnly = false;
    DWORD error = requestDeletion(file.file.handle, support, readOnly, &resetReadOnly);
    if (resetReadOnly)
        error = deleteReadOnly(file, support);
    file.file.close();
    return error;
}
