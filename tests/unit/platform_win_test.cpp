// Win32 answers no run here can provoke: reparse tags Wine never makes, "C:", unreadable free space, ProgramW6432.

#include "app/folder_run.h"
#include "install/app_path.h"
#include "sweep/dir_listing.h"
#include "sweep/win32.h"

#include "temp_folder_win.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

// Wine makes symbolic links only; the other tags stand for what the file
// systems of a render node may hold.
TEST(LinkEntry, NameSurrogatesZeroAndUnknownTagsAreLinksPlaceholdersAreNot)
{
    const DWORD link = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const struct { DWORD attributes, tag; bool isLink; } cases[] = {
        {FILE_ATTRIBUTE_DIRECTORY, static_cast<DWORD>(IO_REPARSE_TAG_SYMLINK), false},
        {link, 0, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_MOUNT_POINT), true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DFS), true},
        {link, 0x00001234, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD_F), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DEDUP), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isLinkEntry(c.attributes, c.tag), c.isLink) << std::hex << c.attributes << " " << c.tag;
}

using FileOps = TempFolderTest;

TEST_F(FileOps, FoldersAndFilesAreToldApart)
{
    const QString file = makeFile(QStringLiteral("file.txt"));
    EXPECT_TRUE(fileExists(file) && folderExists(root) && folderExists(root + QLatin1Char('\\')));
    EXPECT_FALSE(fileExists(root) || folderExists(file) || folderExists(path(QStringLiteral("missing"))));
    // Win32 reads "C:" as the current folder of drive C.
    EXPECT_FALSE(folderExists(QStringLiteral("C:")));
    // A drive whose free space cannot be read shows the stand-in.
    EXPECT_EQ(freeDriveSpaceMiB(QStringLiteral("\\\\no_such_server\\share\\x")), 1000u);
}

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

}
