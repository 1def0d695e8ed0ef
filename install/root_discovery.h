#pragma once
// Finds the suite's installation root, as every tool of the suite does.

#include "install/install_paths.h"

#include <QString>

// Tries -kxRoot, KX_ROOT_INSTALLER, the executable's folder, argv[0] and
// KX_ROOT in that order, applies the relink file and builds the layout.
// rootLog receives what was tried.
bool findInstallRoot(InstallPaths& paths, const QStringList& arguments, QString& rootLog, bool& startedOutsideRoot,
                     bool cfgGlobalFromExeRoot, bool renderAppsFromExeRoot,
                     const FixedNarrowString100& renderAppsOverride, bool win64Binaries);
