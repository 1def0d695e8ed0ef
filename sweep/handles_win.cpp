#include "sweep/handles_win.h"

#include <winternl.h>

#include <map>
#include <utility>

namespace {

// A name longer than this many units cannot be counted in bytes by the
// platform's 16-bit name length; no file system allows one.
constexpr int kLongestName = 32767;

// Opening an entry that another program has deleted but still holds open
// fails with this status, which the platform maps to "access denied".
constexpr NTSTATUS kStatusDeletePending = static_cast<NTSTATUS>(0xC0000056);

DWORD classicDeletion(HANDLE entry)
{
    FILE_DISPOSITION_INFO info = {};
    info.DeleteFile = TRUE;
    if (SetFileInformationByHandle(entry, FileDispositionInfo, &info, sizeof info))
        return ERROR_SUCCESS;
    return GetLastError();
}

DWORD posixDeletion(HANDLE entry, ULONG extraFlags)
{
    FILE_DISPOSITION_INFO_EX info = {};
    info.Flags = FILE_DISPOSITION_FLAG_DELETE | FILE_DISPOSITION_FLAG_POSIX_SEMANTICS | extraFlags;
    if (SetFileInformationByHandle(entry, FileDispositionInfoEx, &info, sizeof info))
        return ERROR_SUCCESS;
    return GetLastError();
}

}

OwnedHandle::OwnedHandle(OwnedHandle&& other) noexcept
    : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE))
{
}

OwnedHandle& OwnedHandle::operator=(OwnedHandle&& other) noexcept
{
    if (this != &other) {
        close();
        handle = std::exchange(other.handle, INVALID_HANDLE_VALUE);
    }
    return *this;
}

OwnedHandle::~OwnedHandle()
{
    close();
}

void OwnedHandle::close()
{
    if (handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
    handle = INVALID_HANDLE_VALUE;
}

OwnedHandle openInFolder(HANDLE folder, const QString& name, ACCESS_MASK access, ULONG sharing, ULONG options,
                         DWORD& error)
{
    OwnedHandle opened;
    if (name.isEmpty() || name.size() > kLongestName) {
        error = ERROR_INVALID_NAME;
        return opened;
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
    const NTSTATUS result = NtCreateFile(
        &handle, access | SYNCHRONIZE, &attributes, &status, nullptr, 0, sharing, FILE_OPEN,
        options | FILE_OPEN_REPARSE_POINT | FILE_OPEN_NO_RECALL | FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0);
    if (NT_SUCCESS(result)) {
        error = ERROR_SUCCESS;
        opened.handle = handle;
        return opened;
    }
    error = openFailure(result);
    return opened;
}

OwnedHandle openInFolderAskingLess(HANDLE folder, const QString& name, ACCESS_MASK access, ACCESS_MASK extra,
                                   ULONG sharing, ULONG options, DWORD& error)
{
    OwnedHandle opened = openInFolder(folder, name, access | extra, sharing, options, error);
    if (extra != 0 && error == ERROR_ACCESS_DENIED)
        opened = openInFolder(folder, name, access, sharing, options, error);
    return opened;
}

DWORD openFailure(LONG status)
{
    if (status == kStatusDeletePending)
        return ERROR_DELETE_PENDING;
    return RtlNtStatusToDosError(status);
}

bool isGoneError(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_DELETE_PENDING;
}

// A render node mixes local drives and file servers, which know different
// requests: what one refused says nothing about another.
DeletionSupport& deletionSupportFor(std::uint32_t volumeSerial)
{
    static std::map<std::uint32_t, DeletionSupport> volumes;
    return volumes[volumeSerial];
}

namespace {

DWORD sendDeletionRequest(HANDLE entry, DeletionRequest request)
{
    switch (request) {
    case DeletionRequest::PosixIgnoringReadOnly:
        return posixDeletion(entry, FILE_DISPOSITION_FLAG_IGNORE_READONLY_ATTRIBUTE);
    case DeletionRequest::Posix:
        return posixDeletion(entry, 0);
    case DeletionRequest::Classic:
        return classicDeletion(entry);
    default:
        return ERROR_INVALID_FUNCTION;
    }
}

}

DWORD requestDeletion(HANDLE entry, DeletionSupport& support, bool readOnly, bool* resetReadOnly)
{
    DWORD error = ERROR_SUCCESS;
    for (DeletionRequest request = firstDeletionRequest(support, readOnly); request != DeletionRequest::None;
         request = nextDeletionRequest(request, error, readOnly, support)) {
        if (request == DeletionRequest::ResetReadOnly) {
            *resetReadOnly = true;
            break;
        }
        error = sendDeletionRequest(entry, request);
        if (error == ERROR_SUCCESS)
            break;
    }
    return error;
}
