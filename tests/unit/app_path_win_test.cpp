#include "install/app_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

// Sets, or with an empty value removes, a variable for the CRT until the scope ends.
struct ScopedVariable {
    ScopedVariable(const wchar_t* name, const wchar_t* value) : name(name) { _wputenv_s(name, value); }
    ~ScopedVariable() { _wputenv_s(name, old.c_str()); }
    const wchar_t* name;
    const std::wstring old = _wgetenv(name) != nullptr ? _wgetenv(name) : L"";
};

// The euro sign shows that values are read as wide text.
TEST(GetEnvWin, ProgramFilesPrefersProgramW6432AndUnsetVariablesAreEmpty)
{
    const ScopedVariable programFiles(L"ProgramFiles", L"C:\\Program Files (x86)");
    const ScopedVariable programW6432(L"ProgramW6432", L"C:\\Programme \u20AC");
    EXPECT_EQ(getEnv(QStringLiteral("PROGRAMFILES")), QStringLiteral("C:\\Programme \u20AC"));
    _wputenv_s(L"ProgramW6432", L"");
    EXPECT_EQ(getEnv(QStringLiteral("ProgramW6432")), QString());
    EXPECT_EQ(getEnv(QStringLiteral("ProgramFiles")), QStringLiteral("C:\\Program Files (x86)"));
}

} // namespace
