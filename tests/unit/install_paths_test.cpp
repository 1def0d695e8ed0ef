#include "install/install_paths.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

struct Layout {
    std::unique_ptr<InstallPaths> paths = std::make_unique<InstallPaths>();
    QString operator[](int entry) const { return toQString(paths->entries[entry]); }
};

LayoutSources defaultSources()
{
    LayoutSources sources;
    sources.hasAppFolder = true;
    sources.appFolder = QStringLiteral("X:\\suite\\bin\\\\win64\\");
    sources.localDataFolder = QStringLiteral("C:\\KX_localdata\\");
    return sources;
}

Layout build(const char* root, const char* exe, const char* status = "",
             const LayoutSources& sources = defaultSources())
{
    Layout layout;
    layout.paths->entries[kRootEntry] = toFixedWide250(QString::fromLatin1(root));
    layout.paths->entries[kExeRootEntry] = toFixedWide250(QString::fromLatin1(exe));
    layout.paths->entries[kStatusEntry] = toFixedWide250(QString::fromLatin1(status));
    layout.paths->entries[kClearedEntry] = toFixedWide250(QStringLiteral("X:\\stale\\"));
    buildInstallLayoutFrom(*layout.paths, sources);
    return layout;
}

// Root X:\suite\ and a relinked executables root Y:\exe\ show which entries
// follow which root.
TEST(InstallLayout, EachEntryFollowsRootExeOrLocalData)
{
    const char* expected[kInstallPathCount] = {
        R"(X:\suite\)", R"(Y:\exe\bin\win\)", R"(X:\suite\sub\)", R"(X:\suite\sub\cfg_global\)",
        R"(X:\suite\sub\cfg_user\)", R"(X:\suite\kxJobdata\)", R"(X:\suite\autoload\)",
        R"(C:\KX_localdata\renderscripts\)", R"(X:\suite\sub\cfg_website_templates\)",
        R"(X:\suite\render_apps\_config\)", R"(X:\suite\render_apps\_prepost_scripts\)",
        R"(X:\suite\render_apps\_setenv\win\)", R"(X:\suite\render_apps\_install_paths\)",
        R"(X:\suite\render_apps\_submitplugins\)", R"(Y:\exe\sub\log\)", R"(X:\suite\sub\history_db\)",
        R"(Y:\exe\plugins64\server_jobs\)", R"(Y:\exe\plugins64\server_notify\)", R"(Y:\exe\bin\win64\)",
        R"(Y:\exe\plugins64\image\)", R"(Y:\exe\plugins64\submitter_sceneparser\)", R"(C:\KX_localdata\)",
        R"(C:\KX_localdata\textures\)", R"(C:\KX_localdata\renderer_exe\)", R"(C:\KX_localdata\temp\)",
        R"(C:\KX_localdata\renderout\)", R"(C:\KX_localdata\cachedscenes\)",
        R"(C:\KX_localdata\renderer_prefs\)", "", R"(Y:\exe\)", "", R"(X:\suite\sub\stats\)",
        R"(Y:\exe\plugins\)", R"(X:\suite\bin\win64\)", R"(X:\suite\sub\cfg_global\)",
        R"(X:\suite\render_apps\_setenv\all\)", R"(X:\suite\render_apps\scripts\)",
        R"(Y:\exe\sub_user\log\)", R"(C:\KX_localdata\_kxServer\)",
    };
    const Layout layout = build(R"(X:\suite\)", R"(Y:\exe\)");
    for (int entry = 0; entry < kInstallPathCount; ++entry)
        EXPECT_EQ(layout[entry], QString::fromLatin1(expected[entry])) << "entry " << entry;
}

TEST(InstallLayout, DebugRootAndStatusFolderMoveTheirEntriesOnly)
{
    const Layout debug = build(R"(X:\suite_Debug\)", R"(X:\suite_Debug\)");
    EXPECT_EQ(debug[0], QStringLiteral(R"(X:\suite_release\)"));
    EXPECT_EQ(debug[2], QStringLiteral(R"(X:\suite_release\sub\)"));
    EXPECT_EQ(debug[18], QStringLiteral(R"(X:\suite_Debug\bin\win64\)"));
    EXPECT_EQ(debug[32], QStringLiteral(R"(X:\suite_release\plugins\)"));

    const Layout plain = build(R"(X:\suite\)", R"(X:\suite\)");
    const Layout status = build(R"(X:\suite\)", R"(X:\suite\)", R"(X:\status\)");
    EXPECT_EQ(status[5], QStringLiteral(R"(X:\status\kxJobdata\)"));
    for (int entry = 0; entry < kInstallPathCount; ++entry) {
        if (entry != 5 && entry != kStatusEntry) {
            EXPECT_EQ(status[entry], plain[entry]) << "entry " << entry;
        }
    }
}

TEST(InstallLayout, ExeRootOptionsAndOverrideMoveTheirEntries)
{
    LayoutSources sources = defaultSources();
    sources.win64Binaries = false;
    sources.cfgGlobalFromExeRoot = true;
    sources.renderAppsFromExeRoot = true;
    sources.hasAppFolder = false;
    Layout layout = build(R"(X:\suite\)", R"(Y:\exe\)", "", sources);
    EXPECT_EQ(layout[18], QStringLiteral(R"(Y:\exe\bin\win\)"));
    EXPECT_EQ(layout[34], QStringLiteral(R"(Y:\exe\sub\cfg_global\)"));
    EXPECT_EQ(layout[9], QStringLiteral(R"(Y:\exe\render_apps\_config\)"));
    EXPECT_EQ(layout[35], QStringLiteral(R"(X:\suite\render_apps\_setenv\all\)"));
    EXPECT_EQ(layout[33], QString());

    sources.renderAppsOverride = toQString(renderAppsOverrideFolder(latin1FromQString<100>(QStringLiteral("R:/apps"))));
    layout = build(R"(X:\suite\)", R"(Y:\exe\)", "", sources);
    EXPECT_EQ(layout[9], QStringLiteral(R"(R:\apps\_config\)"));
    EXPECT_EQ(layout[11], QStringLiteral(R"(R:\apps\_setenv\win\)"));
}

TEST(InstallLayout, LocalDataMovesToSystemDriveOnlyWithoutDriveC)
{
    constexpr std::uint32_t withoutC = 1u << 3;
    EXPECT_EQ(localDataFolder(kDriveCMask | withoutC, QStringLiteral("D:")), QStringLiteral(R"(C:\KX_localdata\)"));
    EXPECT_EQ(localDataFolder(withoutC, QString()), QStringLiteral(R"(C:\KX_localdata\)"));

    LayoutSources sources = defaultSources();
    sources.localDataFolder = localDataFolder(withoutC, QStringLiteral("D:"));
    const Layout layout = build(R"(X:\suite\)", R"(X:\suite\)", "", sources);
    EXPECT_EQ(layout[21], QStringLiteral(R"(D:\KX_localdata\)"));
    EXPECT_EQ(layout[24], QStringLiteral(R"(D:\KX_localdata\temp\)"));
}

} // namespace
