#include "install/app_path.h"

#include <gtest/gtest.h>

// Input, then the parent; callers use the text changed in place.
TEST(NarrowParentFolder, DriveAndShareRootsAreNotCut)
{
    const char* const cases[][2] = {
        {"ab", "ab"}, {"abc", R"(abc\)"}, {R"(X:\a\b\)", R"(X:\a\)"}, {R"(X:\a)", R"(X:\)"}, {R"(X:\)", R"(X:\)"},
        {R"(\\srv\share\)", R"(\\srv\share\)"}, {R"(\\srv\share\d\)", R"(\\srv\share\)"},
    };
    for (const auto& c : cases) {
        FixedNarrowString250 path;
        path.assignNarrow(c[0]);
        parentFolderNarrow(path);
        EXPECT_EQ(toQString(path), QString::fromLatin1(c[1])) << c[0];
    }
}

// appFolder's fallback when the module's file name is unknown, which asks for
// the current directory only where needed. argv0 and that directory, then the folder.
TEST(AppFolderFromArgv0, RelativePathsFollowTheCurrentDirectoryAndEachParentReference)
{
    const char* const cases[][3] = {
        {R"(bin\tool.exe)", R"(X:\suite)", R"(X:\suite\bin\)"},
        {R"(..\win64\tool.exe)", R"(X:\suite\bin\x64\)", R"(X:\suite\bin\win64\)"},
        {R"(a\..\b\x.exe)", R"(X:\suite)", R"(X:\b\)"},
        {R"(..\..\x.exe)", R"(X:\a\b\c)", R"(X:\a\)"},
        {R"(bin\tool.exe)", R"(X:\)", R"(bin\)"},
        {R"(C:\t\x.exe)", R"(X:\suite)", R"(C:\t\)"},
        {R"(a\b)", R"(X:\suite)", ""},
    };
    for (const auto& c : cases) {
        FixedNarrowString250 cwd;
        if (argv0NeedsCurrentDirectory(c[0]))
            cwd.assignNarrow(c[1]);
        FixedNarrowString250 path = executablePathFromArgv0(c[0], cwd);
        EXPECT_EQ(toExecutableFolder(path), *c[2] != 0) << c[0];
        EXPECT_EQ(toQString(path), QString::fromLatin1(c[2])) << c[0];
    }
}
