#include "install/install_paths.h"

#include <gtest/gtest.h>

namespace {

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

} // namespace
