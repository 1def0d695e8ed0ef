// Bench tool: the floor the tool's speed is measured against. It deletes every
// file below the folder named on its command line and removes the emptied
// subfolders, keeping the folder itself, with no more Win32 calls than that
// takes: one search per folder, one DeleteFileW per file, one RemoveDirectoryW
// per subfolder. It checks no age and resets no attributes, so it is only for
// trees of plain files that are all to go. Failures go to standard error and
// make the exit code 1.
// Usage: kxFloorSweep <absolute folder>

#include "sweep/win32.h"

#include <cstdio>
#include <cwchar>
#include <string>

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

}

int wmain(int argc, wchar_t* argv[])
{
    if (argc != 2) {
        fprintf(stderr, "usage: kxFloorSweep <absolute folder>\n");
        return 2;
    }
    return clearFolder(std::wstring(L"\\\\?\\") + argv[1]) == 0 ? 0 : 1;
}
