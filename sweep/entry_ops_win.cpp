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
DWORD deleteReadOnly(FileToDelete& file)
{
    const HANDLE handle = file.file.handle;
    const bool otherNames = hasOtherNames(handle);
    if (!setAttributes(handle, FILE_ATTRIBUTE_NORMAL))
        return GetLastError();
    const DWORD error = requestDeletion(handle, 0);
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
    file.attributes = info.FileAttributes;
    return true;
}

// With POSIX semantics a read-only file goes with no attribute to reset.
// Where the system refuses that request, it is refused the first time on
// whatever file comes first, and that file's classic request may then fail on
// the attribute: it is tried once more the classic way for read-only files.
DWORD deleteOpenedFile(FileToDelete& file)
{
    const bool readOnly = (file.attributes & FILE_ATTRIBUTE_READONLY) != 0;
    DWORD error = ERROR_ACCESS_DENIED;
    if (!readOnly || knowsPosixDeletion())
        error = requestDeletion(file.file.handle, FILE_DISPOSITION_FLAG_IGNORE_READONLY_ATTRIBUTE);
    if (readOnly && !knowsPosixDeletion() && error == ERROR_ACCESS_DENIED)
        error = deleteReadOnly(file);
    file.file.close();
    return error;
}
