// The installation's rules that no run shows: the executable's folder, root
// flags, relink lines, the failure message and the layout.

#include "app/startup_check.h"
#include "install/app_path.h"
#include "install/install_paths.h"
#include "install/root_rules.h"

#include "test_support.h"

#include <gtest/gtest.h>

namespace {

// appFolder's fallback when the module's file name is unknown, which asks for
// the current directory only where needed. argv0 and that directory, then the folder.
TEST(AppFolderFromArgv0, RelativePathsFollowTheCurrentDirectoryAndEachParentReference)
{
    const char* const cases[][3] = {
        {R"(bin\tool.exe)", R"(X:\suite)", R"(X:\suite\bin\)"},
        {R"(..\win64\tool.exe)", R"(X:\suite\bin\x64\)", R"(X:\suite\bin\win64\)"},
        {R"(..\..\x.exe)", R"(X:\a\b\c)", R"(X:\a\)"},
        {R"(bin\tool.exe)", R"(X:\)", R"(bin\)"},
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

TEST(RootFlagScan, PrefixIgnoresCaseValueIsDecodedAndNotSkipped)
{
    const struct { std::initializer_list<std::string> arguments; const char* values; } cases[] = {
        {{"x", "C:\\temp", "-kxRoot"}, ""},
        {{"x", "-KXROOTDIR", "X:\\a&amp;b"}, "X:\\a&b\\"},
        {{"x", "-kxRoot", "-kxRoot", "X:/s/"}, "-kxRoot\\|X:/s/"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(latin1(kxRootFlagValues(commandLine(c.arguments)).join(QLatin1Char('|'))), c.values);
    }
}

TEST(RelinkLine, ValueFollowsTheFirstEqualsAndOtherLinesChangeNothing)
{
    const struct { const char *line, *root; } cases[] = {
        {"RootDir=Y:\\\xE9=b", "Y:\\\xE9=b\\"},
        {"Root=", ""},
        {"Root Y:\\data", ""},
        {"Base=Y:\\data", ""},
    };
    for (const auto& c : cases) {
        InstallPaths paths;
        paths.entries[kExeRootEntry].assignNarrow("E:\\");
        applyRelinkLine(paths, c.line);
        EXPECT_EQ(latin1(toQString(paths.entries[kRootEntry])), c.root) << c.line;
        EXPECT_EQ(latin1(toQString(paths.entries[kExeRootEntry])), "E:\\") << c.line;
    }
}

// Each arg() fills the lowest placeholder left: "%2" in argv[0] takes the flag value, then "%3" rootLog.
TEST(RootFailureMessage, FillsOnePlaceholderAtATimeAndShowsArgv0AsGiven)
{
    EXPECT_EQ(latin1(rootFailureMessage(commandLine({"C:\\\xE9&amp;%2", "-kxRoot", "R%3"}), QStringLiteral("L"))),
              "Unable to get KX Root path; This executable was not started from a KX directory.\n\n"
              " (Tried: 'C:\\\xE9&amp;RL\\', 'RL\\')\nL");
}

struct Layout {
    InstallPaths paths;
    QString operator[](int entry) const { return toQString(paths.entries[entry]); }
};

Layout build(const char* root, const char* exe, const char* status, const LayoutSources& sources = {})
{
    Layout layout;
    layout.paths.entries[kRootEntry] = toFixedWide250(QString::fromLatin1(root));
    layout.paths.entries[kExeRootEntry] = toFixedWide250(QString::fromLatin1(exe));
    layout.paths.entries[kStatusEntry] = toFixedWide250(QString::fromLatin1(status));
    layout.paths.entries[kClearedEntry] = toFixedWide250(QStringLiteral("X:\\stale\\")); // each build clears it
    buildInstallLayoutFrom(layout.paths, sources);
    return layout;
}

// A relinked executables root takes the program side only, a status folder entry
// 5 only; without win64 binaries entry 18 copies entry 1.
TEST(InstallLayout, EachEntryFollowsTheRootItBelongsTo)
{
    LayoutSources sources;
    sources.win64Binaries = false;
    const Layout layout = build(R"(X:\suite\)", R"(Y:\exe\)", R"(X:\status\)", sources);
    for (int entry : {2, 3, 4, 6, 8, 9, 10, 11, 12, 13, 15, 31, 34, 35, 36})
        EXPECT_TRUE(layout[entry].startsWith(QStringLiteral(R"(X:\suite\)"))) << entry;
    for (int entry : {1, 14, 16, 17, 18, 19, 20, 32, 37})
        EXPECT_TRUE(layout[entry].startsWith(QStringLiteral(R"(Y:\exe\)"))) << entry;
    EXPECT_EQ(layout[5], QStringLiteral(R"(X:\status\kxJobdata\)"));
    EXPECT_EQ(layout[18], QStringLiteral(R"(Y:\exe\bin\win\)"));
    EXPECT_EQ(layout[kClearedEntry], QString());
}

// Case is ignored and "_release" written; Exe-based entries but 32 keep the case given.
TEST(InstallLayout, DebugBecomesReleaseInRootAndEntry32Only)
{
    const Layout layout = build(R"(X:\suite_Debug\)", R"(X:\suite_Debug\)", "");
    EXPECT_EQ(layout[0], QStringLiteral(R"(X:\suite_release\)"));
    EXPECT_EQ(layout[5], QStringLiteral(R"(X:\suite_release\kxJobdata\)"));
    EXPECT_EQ(layout[18], QStringLiteral(R"(X:\suite_Debug\bin\win64\)"));
    EXPECT_EQ(layout[32], QStringLiteral(R"(X:\suite_release\plugins\)"));
}

TEST(InstallLayout, LocalDataMovesToSystemDriveOnlyWithoutDriveC)
{
    constexpr std::uint32_t driveD = 1u << 3;
    EXPECT_EQ(localDataFolder(kDriveCMask | driveD, QStringLiteral("D:")), QStringLiteral(R"(C:\KX_localdata\)"));
    EXPECT_EQ(localDataFolder(driveD, QString()), QStringLiteral(R"(C:\KX_localdata\)"));
    LayoutSources sources;
    sources.localDataFolder = localDataFolder(driveD, QStringLiteral("D:"));
    const Layout layout = build(R"(X:\suite\)", R"(X:\suite\)", "", sources);
    EXPECT_EQ(layout[21], QStringLiteral(R"(D:\KX_localdata\)"));
    EXPECT_EQ(layout[24], QStringLiteral(R"(D:\KX_localdata\temp\)"));
}

}
