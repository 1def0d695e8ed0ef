#include "sweep/entry_ops.h"

#include "sweep/listing_rules.h"

#include <winternl.h>

namespace {

// A name longer than this many units cannot be counted in bytes by the
// platform's 16-bit name length; no file system allows one.
constexpr int kLongestName = 32767;

bool setDisposition(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, const void* info, DWORD size)
{
    return SetFileInformationByHandle(file, kind, const_cast<void*>(info), size) != FALSE;
}

bool isUnknownRequest(DWORD error)
{
    return error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION;
}

DWORD deleteIgnoringReadOnly(HANDLE file)
{
    FILE_DISPOSITION_INFO_EX info = {};
    info.Flags = FILE_DISPOSITION_FLAG_DELETE | FILE_DISPOSITION_FLAG_POSIX_SEMANTICS
        | FILE_DISPOSITION_FLAG_IGNORE_READONLY_ATTRIBUTE;
    if (setDisposition(file, FileDispositionInfoEx, &info, sizeof info))
        return ERROR_SUCCESS;
    return GetLastError();
}

DWORD markForDeletion(HANDLE file)
{
    FILE_DISPOSITION_INFO info = {};
    info.DeleteFile = TRUE;
    if (setDisposition(file, FileDispositionInfo, &info, sizeof info))
        return ERROR_SUCCESS;
    return GetLastError();
}

bool setAttributes(HANDLE file, DWORD attributes)
{
    // Zero times leave the file's times as they are.
    FILE_BASIC_INFO info = {};
    info.FileAttributes = attributes;
    return SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof info) != FALSE;
}

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
    if (!setAttributes(file.handle, FILE_ATTRIBUTE_NORMAL))
        return GetLastError();
    const DWORD error = markForDeletion(file.handle);
    if (error != ERROR_SUCCESS || hasOtherNames(file.handle))
        setAttributes(file.handle, file.attributes);
    return error;
}

DWORD deleteWithoutPosixSemantics(FileToDelete& file)
{
    if ((file.attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return deleteReadOnly(file);
    return markForDeletion(file.handle);
}

void closeFile(FileToDelete& file)
{
    if (file.handle != INVALID_HANDLE_VALUE)
        CloseHandle(file.handle);
    file.handle = INVALID_HANDLE_VALUE;
}

TimeStamp timeOf(const FILE_BASIC_INFO& info)
{
    return entryTime(info.LastWriteTime.LowPart, static_cast<std::uint32_t>(info.LastWriteTime.HighPart),
                     info.CreationTime.LowPart, static_cast<std::uint32_t>(info.CreationTime.HighPart));
}

}

HANDLE openInFolder(HANDLE folder, const QString& name, ACCESS_MASK access, ULONG sharing, ULONG options,
                    DWORD& error)
{
    if (name.isEmpty() || name.size() > kLongestName) {
        error = ERROR_INVALID_NAME;
        return INVALID_HANDLE_VALUE;
    }
    UNICODE_STRING objectName;
    objectName.Buffer = const_cast<PWSTR>(asWide(name.utf16()));
    objectName.Length = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    objectName.MaximumLength = objectName.Length;
    OBJECT_ATTRIBUTES attributes;
    // Names are matched ignoring case, as the Win32 calls match them.
    InitializeObjectAttributes(&attributes, &objectName, OBJ_CASE_INSENSITIVE, folder, nullptr);
    IO_STATUS_BLOCK status = {};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS result = NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &status, nullptr, 0, sharing,
                                         FILE_OPEN, options | FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT,
                                         nullptr, 0);
    if (NT_SUCCESS(result)) {
        error = ERROR_SUCCESS;
        return handle;
    }
    error = RtlNtStatusToDosError(result);
    return INVALID_HANDLE_VALUE;
}

bool isGoneError(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

FileToDelete::~FileToDelete()
{
    closeFile(*this);
}

// Opened as the platform's own deletion opens a file: for deletion, sharing
// everything, so a file that another program holds without sharing deletion
// fails here with the same sharing violation. The attributes may only be
// needed for a read-only file, so a file whose attributes may not be changed
// is still opened and deleted where deletion alone is allowed.
bool openFileToDelete(HANDLE folder, const QString& name, FileToDelete& file)
{
    constexpr ULONG kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    file.handle = openInFolder(folder, name, DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, kSharing,
                               FILE_NON_DIRECTORY_FILE, file.error);
    if (file.error == ERROR_ACCESS_DENIED)
        file.handle = openInFolder(folder, name, DELETE | FILE_READ_ATTRIBUTES, kSharing, FILE_NON_DIRECTORY_FILE,
                                   file.error);
    if (file.handle == INVALID_HANDLE_VALUE)
        return false;
    FILE_BASIC_INFO info = {};
    if (!GetFileInformationByHandleEx(file.handle, FileBasicInfo, &info, sizeof info)) {
        file.error = GetLastError();
        closeFile(file);
        return false;
    }
    file.time = timeOf(info);
    file.attributes = info.FileAttributes;
    return true;
}

// Windows 10 from 1809 on deletes a read-only file when asked to, with no
// attribute to reset, and unlinks the name at once even while others hold the
// file open, so its folder can go too. Systems and file systems without it
// refuse the request as an unknown one; the tool then stops asking for the
// rest of the run.
DWORD deleteOpenedFile(FileToDelete& file)
{
    static bool posixDeleteUnknown = false;
    DWORD error = ERROR_SUCCESS;
    if (!posixDeleteUnknown) {
        error = deleteIgnoringReadOnly(file.handle);
        posixDeleteUnknown = isUnknownRequest(error);
    }
    if (posixDeleteUnknown)
        error = deleteWithoutPosixSemantics(file);
    closeFile(file);
    return error;
}
