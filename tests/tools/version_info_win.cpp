// Test tool: prints the version resource of the file named on its command
// line as Windows' file properties read it, one "Name=value" line each: the
// fixed file and product versions, then the strings of the resource's first
// language.

#include "sweep/win32.h"

#include <cstdio>
#include <vector>

namespace {

// The value at path in the resource, or nullptr when it has none of at least minimum bytes.
const void* queryValue(std::vector<unsigned char>& info, const wchar_t* path, UINT minimum)
{
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(info.data(), path, &value, &length) || length < minimum)
        return nullptr;
    return value;
}

void printNumbers(const char* name, DWORD high, DWORD low)
{
    printf("%s=%u.%u.%u.%u\n", name, HIWORD(high), LOWORD(high), HIWORD(low), LOWORD(low));
}

}

int wmain(int argc, wchar_t* argv[])
{
    if (argc != 2) {
        printf("usage: kxVersionInfo <file>\n");
        return 2;
    }
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(argv[1], &ignored);
    if (size == 0) {
        const DWORD error = GetLastError();
        printf("no version resource, error %lu\n", static_cast<unsigned long>(error));
        return 1;
    }
    std::vector<unsigned char> info(size);
    if (!GetFileVersionInfoW(argv[1], 0, size, info.data())) {
        const DWORD error = GetLastError();
        printf("unreadable version resource, error %lu\n", static_cast<unsigned long>(error));
        return 1;
    }

    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(queryValue(info, L"\\", sizeof(VS_FIXEDFILEINFO)));
    const auto* language = static_cast<const WORD*>(queryValue(info, L"\\VarFileInfo\\Translation", 2 * sizeof(WORD)));
    if (fixed == nullptr || language == nullptr) {
        printf("no fixed version or no language\n");
        return 1;
    }
    printNumbers("FileVersionNumber", fixed->dwFileVersionMS, fixed->dwFileVersionLS);
    printNumbers("ProductVersionNumber", fixed->dwProductVersionMS, fixed->dwProductVersionLS);
    for (const wchar_t* name : {L"FileVersion", L"ProductVersion", L"ProductName", L"FileDescription"}) {
        wchar_t path[64];
        swprintf(path, sizeof(path) / sizeof(path[0]), L"\\StringFileInfo\\%04x%04x\\%ls", language[0], language[1],
                 name);
        const auto* value = static_cast<const wchar_t*>(queryValue(info, path, 1));
        printf("%ls=%ls\n", name, value == nullptr ? L"" : value);
    }
    return 0;
}
