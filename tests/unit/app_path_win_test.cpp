#include "install/app_path.h"

#include "sweep/win32.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(AppFolderWin, IsTheRunningExecutablesFolderWhateverArgv0Says)
{
    wchar_t name[MAX_PATH] = {};
    const QString path = QString::fromWCharArray(name, int(GetModuleFileNameW(nullptr, name, MAX_PATH)));
    for (const char* argv0 : {static_cast<const char*>(nullptr), "elsewhere\\other.exe"}) {
        FixedNarrowString250 folder;
        ASSERT_TRUE(appFolder(argv0, folder));
        EXPECT_EQ(toQString(folder), path.left(path.lastIndexOf(QLatin1Char('\\')) + 1));
    }
}

// Sets, or with an empty value removes, a variable where the CRT sees it, and
// restores it at the end of the scope.
struct ScopedVariable {
    ScopedVariable(const wchar_t* name, const wchar_t* value) : name(name)
    {
        const wchar_t* old = _wgetenv(name);
        oldValue = old != nullptr ? old : L"";
        _wputenv_s(name, value);
    }
    ~ScopedVariable() { _wputenv_s(name, oldValue.c_str()); }

    const wchar_t* name;
    std::wstring oldValue;
};

TEST(GetEnvWin, SetVariablesAreReadAsWideTextAndUnsetOnesAreEmpty)
{
    const ScopedVariable set(L"KX_TEST_SET", L"C:\\kx \u00E4\u20AC");
    const ScopedVariable unset(L"KX_TEST_UNSET", L"");
    EXPECT_EQ(getEnv(QStringLiteral("KX_TEST_SET")), QStringLiteral("C:\\kx \u00E4\u20AC"));
    EXPECT_EQ(getEnv(QStringLiteral("KX_TEST_UNSET")), QString());
}

TEST(GetEnvWin, ProgramFilesPrefersProgramW6432)
{
    const ScopedVariable programFiles(L"ProgramFiles", L"C:\\Program Files (x86)");
    {
        const ScopedVariable programW6432(L"ProgramW6432", L"C:\\Program Files");
        EXPECT_EQ(getEnv(QStringLiteral("PROGRAMFILES")), QStringLiteral("C:\\Program Files"));
    }
    const ScopedVariable noProgramW6432(L"ProgramW6432", L"");
    EXPECT_EQ(getEnv(QStringLiteral("ProgramFiles")), QStringLiteral("C:\\Program Files (x86)"));
}

} // namespace
