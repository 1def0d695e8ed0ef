#include "install/install_paths.h"

#include "install/app_path.h"
#include "sweep/file_ops.h"
#include "sweep/win32.h"

void buildInstallLayout(InstallPaths& paths, const QStringList& arguments, bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride, bool win64Binaries)
{
    LayoutSources sources;
    sources.cfgGlobalFromExeRoot = cfgGlobalFromExeRoot;
    sources.renderAppsFromExeRoot = renderAppsFromExeRoot;
    sources.win64Binaries = win64Binaries;

    if (!renderAppsOverride.isEmpty() && folderExists(toQString(renderAppsOverride)))
        sources.renderAppsOverride = toQString(renderAppsOverrideFolder(renderAppsOverride));

    if (!arguments.isEmpty()) {
        appFolder(arguments.first().toLatin1().constData(), sources.appFolder);
        sources.hasAppFolder = true;
    }

    const DWORD drives = GetLogicalDrives();
    sources.localDataFolder =
        localDataFolder(drives, (drives & kDriveCMask) != 0 ? QString() : getEnv(QStringLiteral("SystemDrive")));

    buildInstallLayoutFrom(paths, sources);
}
