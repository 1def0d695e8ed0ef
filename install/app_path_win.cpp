#include "install/app_path.h"

#include "sweep/win32.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace {

// The first try holds any classic path; the longest a path can be is the limit.
constexpr DWORD kFirstModuleNameUnits = MAX_PATH;
constexpr DWORD kLongestPathUnits = 32768;
constexpr DWORD kCurrentDirectoryBufferSize = 249;

// The executable's own path, however long and in whatever script; empty when
// the system cannot say. A name cut to the buffer fills it whole.
QString modulePath()
{
    std::vector<wchar_t> buffer(kFirstModuleNameUnits);
    for (;;) {
        const DWORD count = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (count == 0)
            return QString();
        if (count < buffer.size())
            return QString::fromWCharArray(buffer.data(), count);
        if (buffer.size() >= kLongestPathUnits)
            return QString();
        buffer.resize(buffer.size() * 2);
    }
}

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

bool appFolder(const char* argv0, QString& folder)
{
    const QString path = modulePath();
    if (!path.isEmpty()) {
        folder = path.left(path.lastIndexOf(QLatin1Char('\\')) + 1);
        return !folder.isEmpty();
    }
    FixedNarrowString250 fromArgv0;
    if (argv0 != nullptr) {
        FixedNarrowString250 directory;
        if (argv0NeedsCurrentDirectory(argv0))
            directory = currentDirectory();
        fromArgv0 = executablePathFromArgv0(argv0, directory);
    }
    const bool found = toExecutableFolder(fromArgv0);
    folder = toQString(fromArgv0);
    return found;
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
