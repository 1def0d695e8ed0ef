// Test tool: holds the files or folders named on its command line open without
// sharing, prints "held" and keeps them open until its standard input closes.
// Other processes then fail to delete, list or remove them with a sharing
// violation, as when a render job still has a file open. With "-cd <folder>"
// it makes the folder its current folder instead, as a job started there does.
// With "-share <letters> <file>..." it opens the files for reading and
// appending, sharing what the letters r, w and d name: "-share rwd" as another
// run appending to a shared log, "-share rw" as an exporter reading a file.

#include "sweep/win32.h"

#include <cstdio>
#include <cwchar>
#include <vector>

namespace {

int failed(DWORD error)
{
    printf("failed %lu\n", static_cast<unsigned long>(error));
    return 2;
}

DWORD sharingOf(const wchar_t* letters)
{
    DWORD sharing = 0;
    if (std::wcschr(letters, L'r') != nullptr)
        sharing |= FILE_SHARE_READ;
    if (std::wcschr(letters, L'w') != nullptr)
        sharing |= FILE_SHARE_WRITE;
    if (std::wcschr(letters, L'd') != nullptr)
        sharing |= FILE_SHARE_DELETE;
    return sharing;
}

}

int wmain(int argc, wchar_t* argv[])
{
    std::vector<HANDLE> held;
    const bool standIn = argc == 3 && std::wcscmp(argv[1], L"-cd") == 0;
    if (standIn && !SetCurrentDirectoryW(argv[2]))
        return failed(GetLastError());
    const bool shared = argc >= 3 && std::wcscmp(argv[1], L"-share") == 0;
    const DWORD access = shared ? GENERIC_READ | FILE_APPEND_DATA : GENERIC_READ;
    const DWORD sharing = shared ? sharingOf(argv[2]) : 0;
    for (int i = shared ? 3 : 1; i < argc && !standIn; ++i) {
        const HANDLE handle = CreateFileW(argv[i], access, sharing, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle == INVALID_HANDLE_VALUE)
            return failed(GetLastError());
        held.push_back(handle);
    }
    printf("held\n");
    fflush(stdout);
    while (getchar() != EOF) {
    }
    for (HANDLE handle : held)
        CloseHandle(handle);
    return 0;
}
