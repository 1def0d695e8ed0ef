// Test tool: tries held folders while the tool under test is sweeping below
// them. Arguments: a file the sweep deletes early, a file it deletes late, and
// the folders. It prints "ready" and waits until the early file is gone. Then
// for each folder it opens it as Windows opens a rename's target folder and as
// it opens a program's current folder, then tries to remove it and to rename
// it (to its name with "_moved" appended); it prints the Win32 error of each
// of the four on one line, 0 for success. Each folder holds files, so a
// removal that the hold does not stop fails as not empty, not as shared. Last
// it prints "during" when the late file still exists, so the tries fell within
// the sweep, or "after" when they came too late to tell anything.

#include "sweep/win32.h"

#include <cstdio>
#include <string>

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

DWORD rename(const wchar_t* folder)
{
    const std::wstring moved = std::wstring(folder) + L"_moved";
    if (MoveFileExW(folder, moved.c_str(), 0))
        return ERROR_SUCCESS;
    return GetLastError();
}

}

int wmain(int argc, wchar_t* argv[])
{
    if (argc < 4 || !exists(argv[1]))
        return 2;
    printf("ready\n");
    fflush(stdout);
    while (exists(argv[1]))
        SwitchToThread();
    for (int i = 3; i < argc; ++i) {
        const DWORD target = openAs(argv[i], FILE_WRITE_DATA);
        const DWORD current = openAs(argv[i], FILE_TRAVERSE);
        const DWORD removed = RemoveDirectoryW(argv[i]) ? ERROR_SUCCESS : GetLastError();
        printf("%lu %lu %lu %lu\n", static_cast<unsigned long>(target), static_cast<unsigned long>(current),
               static_cast<unsigned long>(removed), static_cast<unsigned long>(rename(argv[i])));
    }
    printf(exists(argv[2]) ? "during\n" : "after\n");
    return 0;
}
