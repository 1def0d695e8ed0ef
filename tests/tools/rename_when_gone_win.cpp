// Test tool: renames folders while the tool under test is sweeping below
// them. Arguments: a file the sweep deletes early, a file it deletes late, and
// the folders. It prints "ready", waits until the early file is gone, tries to
// rename each folder (to its name with "_moved" appended) and prints the
// Win32 error of each try, 0 when the folder was renamed. Last it prints
// "during" when the late file still exists, so the tries fell within the
// sweep, or "after" when they came too late to tell anything.

#include "sweep/win32.h"

#include <cstdio>
#include <string>

namespace {

bool exists(const wchar_t* path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
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
        const std::wstring moved = std::wstring(argv[i]) + L"_moved";
        const bool renamed = MoveFileExW(argv[i], moved.c_str(), 0) != FALSE;
        const DWORD error = renamed ? ERROR_SUCCESS : GetLastError();
        printf("%lu\n", static_cast<unsigned long>(error));
    }
    printf(exists(argv[2]) ? "during\n" : "after\n");
    return 0;
}
