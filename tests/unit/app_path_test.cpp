#include "install/app_path.h"

#include <gtest/gtest.h>

#include <string>

namespace {

FixedNarrowString250 narrow(const char* text)
{
    FixedNarrowString250 result;
    result.assignNarrow(text);
    return result;
}

std::string text(const FixedNarrowString250& value)
{
    return std::string(value.value, value.length);
}

TEST(NarrowParentFolder, DriveAndShareRootsAreNotCut)
{
    const struct {
        const char* path;
        const char* expected;
    } cases[] = {
        {"ab", "ab"},           {"abc", R"(abc\)"}, {R"(X:\a\b\)", R"(X:\a\)"},
        {R"(X:\a)", R"(X:\)"},  {R"(X:\)", R"(X:\)"}, {R"(\\srv\share\)", R"(\\srv\share\)"},
        {R"(\\srv\share\d\)", R"(\\srv\share\)"},
    };
    for (const auto& c : cases) {
        FixedNarrowString250 path = narrow(c.path);
        EXPECT_EQ(text(parentFolderNarrow(path)), c.expected) << c.path;
        EXPECT_EQ(text(path), c.expected) << c.path;
    }
}

// What appFolder falls back on when the module's own file name is unknown.
TEST(AppFolderFromArgv0, RelativePathsFollowTheCurrentDirectory)
{
    const struct {
        const char* argv0;
        const char* cwd;
        bool needsCwd;
        const char* folder;
    } cases[] = {
        {R"(bin\tool.exe)", R"(X:\suite)", true, R"(X:\suite\bin\)"},
        {R"(bin\tool.exe)", R"(X:\suite\)", true, R"(X:\suite\bin\)"},
        {R"(..\win64\tool.exe)", R"(X:\suite\bin\x64)", true, R"(X:\suite\bin\win64\)"},
        {R"(a\..\b\x.exe)", R"(X:\suite)", true, R"(X:\b\)"},
        {R"(..\..\x.exe)", R"(X:\a\b\c)", true, R"(X:\a\)"},
        {R"(bin\tool.exe)", R"(X:\)", true, R"(bin\)"},
        {R"(a\b)", R"(X:\suite)", false, ""},
        {R"(C:\t\x.exe)", R"(X:\suite)", false, R"(C:\t\)"},
        {R"(\t\x.exe)", R"(X:\suite)", false, R"(\t\)"},
        {"tool.exe", R"(X:\suite)", false, R"(tool.exe\)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(argv0NeedsCurrentDirectory(c.argv0), c.needsCwd) << c.argv0;
        FixedNarrowString250 path = executablePathFromArgv0(c.argv0, narrow(c.cwd));
        EXPECT_EQ(toExecutableFolder(path), *c.folder != 0) << c.argv0;
        EXPECT_EQ(text(path), c.folder) << c.argv0;
    }

    const std::string cwd = R"(X:\)" + std::string(240, 'd');
    EXPECT_EQ(text(executablePathFromArgv0(R"(bin\tool.exe)", narrow(cwd.c_str()))), cwd + R"(\bin\to)");
}

} // namespace
