// Test tool: holds the files or folders named on its command line open without
// sharing, prints "held" and keeps them open until its standard input closes.
// Other processes then fail to delete, list or remove them with a sharing
// violation, as when a render job still has a file open.

#include "sweep/win32.h"

#include <cstdio>
#include <vector>

int wmain(int argc, wchar_t* argv[])
{
    std::vector<HANDLE> held;
    for (int i = 1; i < argc; ++i) {
        const HANDLE handle = CreateFileW(argv[i], GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            const DWORD error = GetLastError();
            printf("failed %lu\n", static_cast<unsigned long>(error));
            return 2;
        }
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
