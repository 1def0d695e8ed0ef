// Bench tool: the floor the tool's speed is measured against. It deletes every
// file below the folder named on its command line and removes the emptied
// subfolders, keeping the folder itself, with no more Win32 calls than that
// takes: one search per folder, one DeleteFileW per file, one RemoveDirectoryW
// per subfolder. It checks no age and resets no attributes, so it is only for
// trees of plain files that are all to go. Failures go to standard error and
// make the exit code 1.
// With -handles it does the same job by the tool's own mechanism, and nothing
// more: each folder is read through a handle held on it, sharing deletion, each
// file opened relative to that handle by its name, its time read, its deletion
// asked for, and closed, four calls per file; each emptied folder is opened
// again by its name for its removal. While it deletes in a folder it pins the
// folder, opened again by its name in its parent without delete sharing, with
// its place on the volume read, and lets the pin go before it goes down into
// a subfolder.
// Usage: kxFloorSweep [-handles] <absolute folder>

#include "sweep/win32.h"

#include <winternl.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

namespace {

bool isDotEntry(const wchar_t* name)
{
    return wcscmp(name, L".") == 0 || wcscmp(name, L"..") == 0;
}

void reportFailure(const char* what, const std::wstring& path, DWORD error)
{
    fprintf(stderr, "%s %ls: error %lu\n", what, path.c_str(), static_cast<unsigned long>(error));
}

// Returns how many entries below folder could not be listed or removed.
int clearFolder(const std::wstring& folder)
{
    WIN32_FIND_DATAW data;
    // FindExInfoBasic leaves out the short names, which nothing here needs.
    const HANDLE search = FindFirstFileExW((folder + L"\\*").c_str(), FindExInfoBasic, &data,
                                           FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        reportFailure("cannot list", folder, error);
        return 1;
    }
    int failures = 0;
    do {
        if (isDotEntry(data.cFileName))
            continue;
        const std::wstring path = folder + L'\\' + data.cFileName;
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            failures += clearFolder(path);
            if (!RemoveDirectoryW(path.c_str())) {
                const DWORD error = GetLastError();
                reportFailure("cannot remove folder", path, error);
                ++failures;
            }
        } else if (!DeleteFileW(path.c_str())) {
            const DWORD error = GetLastError();
            reportFailure("cannot delete", path, error);
            ++failures;
        }
    } while (FindNextFileW(search, &data));
    const DWORD error = GetLastError();
    FindClose(search);
    // Unlike the tool, the floor tells a failed search from the end of the
    // folder: entries it never saw would make it look faster than it is.
    if (error != ERROR_NO_MORE_FILES) {
        reportFailure("listing broke off in", folder, error);
        ++failures;
    }
    return failures;
}

// Written out here, not taken from the tool: the floor must not move when the
// tool does.
HANDLE openRelative(HANDLE folder, const std::wstring& name, ACCESS_MASK access, ULONG sharing, ULONG options)
{
    UNICODE_STRING objectName;
    objectName.Buffer = const_cast<PWSTR>(name.c_str());
    objectName.Length = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    objectName.MaximumLength = objectName.Length;
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &objectName, OBJ_CASE_INSENSITIVE, folder, nullptr);
    IO_STATUS_BLOCK status = {};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS result = NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &status, nullptr, 0, sharing,
                                         FILE_OPEN, options | FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT,
                                         nullptr, 0);
    return NT_SUCCESS(result) ? handle : INVALID_HANDLE_VALUE;
}

bool markForDeletion(HANDLE entry)
{
    FILE_DISPOSITION_INFO info = {};
    info.DeleteFile = TRUE;
    return SetFileInformationByHandle(entry, FileDispositionInfo, &info, sizeof info) != FALSE;
}

constexpr ULONG kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr ULONG kFolderOptions = FILE_DIRECTORY_FILE | FILE_OPEN_FOR_BACKUP_INTENT;

bool deleteRelative(HANDLE folder, const std::wstring& name, bool isFolder)
{
    const HANDLE entry = openRelative(folder, name, DELETE | FILE_READ_ATTRIBUTES, kShareAll,
                                      isFolder ? kFolderOptions : FILE_NON_DIRECTORY_FILE);
    if (entry == INVALID_HANDLE_VALUE)
        return false;
    FILE_BASIC_INFO info = {};
    const bool deleted = GetFileInformationByHandleEx(entry, FileBasicInfo, &info, sizeof info) && markForDeletion(entry);
    CloseHandle(entry);
    return deleted;
}

// The pin of the folder named name in parent, or of folder itself at the top:
// taken before a deletion in it, let go before a subfolder is entered.
struct Pin {
    HANDLE parent;
    const std::wstring& name;
    HANDLE folder;
    HANDLE handle = INVALID_HANDLE_VALUE;

    void take()
    {
        if (handle != INVALID_HANDLE_VALUE)
            return;
        constexpr ULONG kPinSharing = FILE_SHARE_READ | FILE_SHARE_WRITE;
        handle = parent != INVALID_HANDLE_VALUE
            ? openRelative(parent, name, FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES, kPinSharing,
                           kFolderOptions)
            : ReOpenFile(folder, FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES, kPinSharing,
                         FILE_FLAG_BACKUP_SEMANTICS);
        std::vector<std::uint64_t> place(1024);
        IO_STATUS_BLOCK status = {};
        NtQueryInformationFile(handle, &status, place.data(), static_cast<ULONG>(place.size() * 8), FileNameInformation);
    }
    void release()
    {
        if (handle != INVALID_HANDLE_VALUE)
            CloseHandle(handle);
        handle = INVALID_HANDLE_VALUE;
    }
};

int clearHeldFolder(HANDLE folder, HANDLE parent, const std::wstring& folderName)
{
    std::vector<std::uint64_t> buffer(64 * 1024 / sizeof(std::uint64_t));
    std::vector<std::pair<std::wstring, bool>> entries;
    for (FILE_INFO_BY_HANDLE_CLASS kind = FileFullDirectoryRestartInfo;
         GetFileInformationByHandleEx(folder, kind, buffer.data(), static_cast<DWORD>(buffer.size() * 8));
         kind = FileFullDirectoryInfo) {
        for (const auto* bytes = reinterpret_cast<const unsigned char*>(buffer.data());;) {
            const auto& entry = *reinterpret_cast<const FILE_FULL_DIR_INFO*>(bytes);
            std::wstring name(entry.FileName, entry.FileNameLength / sizeof(wchar_t));
            if (!isDotEntry(name.c_str()))
                entries.emplace_back(name, (entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
            if (entry.NextEntryOffset == 0)
                break;
            bytes += entry.NextEntryOffset;
        }
    }
    int failures = 0;
    Pin pin{parent, folderName, folder};
    for (const auto& [name, isFolder] : entries) {
        if (isFolder) {
            pin.release();
            const HANDLE inner = openRelative(folder, name, FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                              kShareAll, kFolderOptions);
            failures += inner == INVALID_HANDLE_VALUE ? 1 : clearHeldFolder(inner, folder, name);
            if (inner != INVALID_HANDLE_VALUE)
                CloseHandle(inner);
        }
        pin.take();
        if (!deleteRelative(folder, name, isFolder)) {
            reportFailure("cannot delete", name, ERROR_GEN_FAILURE);
            ++failures;
        }
    }
    pin.release();
    return failures;
}

int clearThroughHandles(const std::wstring& path)
{
    const HANDLE folder = CreateFileW(path.c_str(), FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                      kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (folder == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        reportFailure("cannot hold", path, error);
        return 1;
    }
    const int failures = clearHeldFolder(folder, INVALID_HANDLE_VALUE, std::wstring());
    CloseHandle(folder);
    return failures;
}

}

int wmain(int argc, wchar_t* argv[])
{
    const bool handles = argc == 3 && wcscmp(argv[1], L"-handles") == 0;
    if (argc != 2 && !handles) {
        fprintf(stderr, "usage: kxFloorSweep [-handles] <absolute folder>\n");
        return 2;
    }
    const std::wstring folder = std::wstring(L"\\\\?\\") + argv[argc - 1];
    return (handles ? clearThroughHandles(folder) : clearFolder(folder)) == 0 ? 0 : 1;
}
