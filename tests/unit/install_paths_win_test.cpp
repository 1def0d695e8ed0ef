#include "install/install_paths.h"

#include "install/app_path.h"
#include "text/path_normalize.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

QString entryAfterBuild(int entry, const QString& override, int argc)
{
    auto paths = std::make_unique<InstallPaths>();
    paths->entries[kRootEntry] = toFixedWide250(QStringLiteral("X:\\suite\\"));
    paths->entries[kExeRootEntry] = paths->entries[kRootEntry];
    char argv0[] = "kx_unit_tests.exe";
    char* argv[] = {argv0, nullptr};
    buildInstallLayout(*paths, argc, argv, false, false, latin1FromQString<100>(override), true);
    return toQString(paths->entries[entry]);
}

TEST(InstallLayoutWin, AppFolderLocalDataAndOverrideComeFromTheMachine)
{
    FixedNarrowString250 folder;
    ASSERT_TRUE(appFolder(nullptr, folder));
    EXPECT_EQ(entryAfterBuild(33, QString(), 1), normalizePath(toQString(folder)));
    EXPECT_EQ(entryAfterBuild(33, QString(), 0), QString());
    EXPECT_EQ(entryAfterBuild(21, QString(), 1), QStringLiteral("C:\\KX_localdata\\")); // Wine maps C:

    const QString rootBased = QStringLiteral("X:\\suite\\render_apps\\_submitplugins\\");
    EXPECT_EQ(entryAfterBuild(13, QStringLiteral("Q:/no/such/folder"), 1), rootBased);
    QTemporaryDir existing; // Qt gives it with slashes and no trailing separator
    ASSERT_TRUE(existing.isValid());
    EXPECT_EQ(entryAfterBuild(13, existing.path(), 1),
              toBackslashPath(existing.path()) + QStringLiteral("\\_submitplugins\\"));
}

} // namespace
