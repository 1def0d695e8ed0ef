// Test tool: tries held folders while the tool under test is sweeping below
// them. Arguments: a file the sweep deletes early, or "-" when the sweep is
// known to be below them already, a file it deletes late, and the folders. It
// prints "ready" and waits until the early file is gone. Then
// for each folder it opens it as Windows opens a rename's target folder and as
// it opens a program's current folder, then tries to remove it, and opens it
// with delete access, sharing everything, to rename it (to its name with
// "_moved" appended) and back; it prints the Win32 error of each of the five
// on one line, 0 for success. A rename refused as shared is tried again for
// up to ten seconds: the sweep pins a folder for the moments it deletes in it. Each folder holds files, so a removal that
// nothing stops fails as not empty, not as shared. Last it prints "during"
// when the late file still exists, so the tries fell within the sweep, or
// "after" when they came too late to tell anything.

#include "sweep/win32.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

bool exists(const wchar_t* path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

DWORD openAs(const wchar_t* folder, DWORD access)
{
    const HANDLE handle = CreateFileW(folder, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError();
    CloseHandle(handle);
    return ERROR_SUCCESS;
}

DWORD renameOnce(const std::wstring& from, const std::wstring& to)
{
    const HANDLE handle = CreateFileW(from.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError();
    std::vector<unsigned char> buffer(sizeof(FILE_RENAME_INFO) + to.size() * sizeof(wchar_t));
    auto* info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    info->FileNameLength = static_cast<DWORD>(to.size() * sizeof(wchar_t));
    to.copy(info->FileName, to.size());
    const DWORD error = SetFileInformationByHandle(handle, FileRenameInfo, info, static_cast<DWORD>(buffer.size()))
        ? ERROR_SUCCESS
        : GetLastError();
    CloseHandle(handle);
    return error;
}

DWORD rename(const std::wstring& from, const std::wstring& to)
{
    constexpr ULONGLONG kPatienceMilliseconds = 10000;
    const ULONGLONG deadline = GetTickCount64() + kPatienceMilliseconds;
    DWORD error = renameOnce(from, to);
    while (error == ERROR_SHARING_VIOLATION && GetTickCount64() < deadline) {
        SwitchToThread();
        error = renameOnce(from, to);
    }
    return error;
}

}

int wmain(int argc, wchar_t* argv[])
{
    const bool waits = std::wstring(argv[1]) != L"-";
    if (argc < 4 || (waits && !exists(argv[1])))
        return 2;
    printf("ready\n");
    fflush(stdout);
    while (waits && exists(argv[1]))
        SwitchToThread();
    for (int i = 3; i < argc; ++i) {
        const DWORD target = openAs(argv[i], FILE_WRITE_DATA);
        const DWORD current = openAs(argv[i], FILE_TRAVERSE);
        const DWORD removed = RemoveDirectoryW(argv[i]) ? ERROR_SUCCESS : GetLastError();
        const std::wstring moved = std::wstring(argv[i]) + L"_moved";
        const DWORD away = rename(argv[i], moved);
        const DWORD back = away == ERROR_SUCCESS ? rename(moved, argv[i]) : away;
        printf("%lu %lu %lu %lu %lu\n", static_cast<unsigned long>(target), static_cast<unsigned long>(current),
               static_cast<unsigned long>(removed), static_cast<unsigned long>(away), static_cast<unsigned long>(back));
    }
    printf(exists(argv[2]) ? "during\n" : "after\n");
    return 0;
}
