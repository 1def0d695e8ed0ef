#include "install/app_path.h"

#include "sweep/win32.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr DWORD kModuleNameBufferSize = 250;
constexpr DWORD kCurrentDirectoryBufferSize = 249;

FixedNarrowString250 currentDirectory()
{
    FixedNarrowString250 directory;
    directory.clear();
    // On failure, or when the buffer is too small, nothing is written and the
    // text stays empty.
    GetCurrentDirectoryA(kCurrentDirectoryBufferSize, directory.value);
    directory.recomputeLength();
    return directory;
}

using DupEnvFunction = errno_t(__cdecl*)(wchar_t**, size_t*, const wchar_t*);
using FreeFunction = void(__cdecl*)(void*);

struct DupEnv {
    DupEnvFunction dupenv = nullptr;
    FreeFunction release = nullptr;
};

// Debian's mingw-w64 import library for msvcrt.dll lacks _wdupenv_s, so it is
// looked up at run time in the CRT module this program is linked to (found
// through a CRT function imported from it), together with that module's free
// for the buffer it hands out. Not every msvcrt.dll exports it (Wine 8's does
// not); then readVariable falls back to _wgetenv_s, which the import library
// has and which reads the same CRT environment.
DupEnv resolveDupEnv()
{
    DupEnv result;
    HMODULE crt = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(&_wputenv), &crt))
        return result;
    result.dupenv = reinterpret_cast<DupEnvFunction>(reinterpret_cast<void*>(GetProcAddress(crt, "_wdupenv_s")));
    result.release = reinterpret_cast<FreeFunction>(reinterpret_cast<void*>(GetProcAddress(crt, "free")));
    if (result.dupenv == nullptr || result.release == nullptr)
        result = DupEnv();
    return result;
}

// True when the variable is set with a non-empty buffer; value receives its
// text up to the terminating zero.
bool readVariable(const QString& name, QString& value)
{
    static const DupEnv crt = resolveDupEnv();
    const std::wstring wideName = name.toStdWString();
    value.clear();

    if (crt.dupenv != nullptr) {
        wchar_t* buffer = nullptr;
        size_t count = 0;
        const bool set = crt.dupenv(&buffer, &count, wideName.c_str()) == 0 && buffer != nullptr && count > 0;
        if (set)
            value = QString::fromWCharArray(buffer);
        crt.release(buffer);
        return set;
    }

    // The size query answers ERANGE on Wine and 0 on Windows; only the size
    // it reports counts (0 when the variable is unset).
    size_t count = 0;
    _wgetenv_s(&count, nullptr, 0, wideName.c_str());
    if (count == 0)
        return false;
    std::vector<wchar_t> buffer(count);
    if (_wgetenv_s(&count, buffer.data(), buffer.size(), wideName.c_str()) != 0 || count == 0)
        return false;
    value = QString::fromWCharArray(buffer.data());
    return true;
}

} // namespace

bool appFolder(const char* argv0, FixedNarrowString250& folder)
{
    folder.clear();
    const DWORD count = GetModuleFileNameA(nullptr, folder.value, kModuleNameBufferSize);
    folder.setLength(std::int16_t(count));
    if (folder.isEmpty() && argv0 != nullptr) {
        FixedNarrowString250 directory;
        if (argv0NeedsCurrentDirectory(argv0))
            directory = currentDirectory();
        folder = executablePathFromArgv0(argv0, directory);
    }
    return toExecutableFolder(folder);
}

QString getEnv(const QString& name)
{
    QString value;
    if (name.compare(QLatin1String("ProgramFiles"), Qt::CaseInsensitive) == 0
        && readVariable(QStringLiteral("ProgramW6432"), value))
        return value;
    readVariable(name, value);
    return value;
}
