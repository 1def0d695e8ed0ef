#pragma once
// The folders of an installation of the suite, derived from the installation
// root and the executables root by fixed rules, as every tool of the suite
// derives them.

#include "text/fixed_string.h"

#include <QString>
#include <QStringList>

#include <cstdint>

constexpr int kInstallPathCount = 39;

// Entries the discovery and the layout refer to by meaning.
enum InstallEntry : int {
    kRootEntry = 0,
    kLocalDataEntry = 21,
    kClearedEntry = 28,
    kExeRootEntry = 29,
    kStatusEntry = 30,
};

// Every non-empty entry is a folder path ending in a backslash.
struct InstallPaths {
    FixedWideString250 entries[kInstallPathCount];
};

// Entries 0, 29 and 30 must hold what root discovery left there.
void buildInstallLayout(InstallPaths& paths, const QStringList& arguments, bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride,
                        bool win64Binaries);

// The per-machine folders below the local data folder (entry 21).
void buildLocalDataLayout(InstallPaths& paths);

// The platform-neutral part of buildInstallLayout: what it learns from the
// platform is handed in, so the rules run and are tested without Win32.

// Drive C: in the mask of GetLogicalDrives.
constexpr std::uint32_t kDriveCMask = 1u << 2;

struct LayoutSources {
    bool cfgGlobalFromExeRoot = false;
    bool renderAppsFromExeRoot = false;
    bool win64Binaries = true;
    // The override folder as renderAppsOverrideFolder gives it; empty when no
    // override applies (none given, or no such folder).
    QString renderAppsOverride;
    // Entry 33 is set only when there is a program name; appFolder is appFolder(its name)
    // read as Latin-1, before normalisation.
    bool hasAppFolder = false;
    QString appFolder;
    // Entry 21, as localDataFolder gives it.
    QString localDataFolder;
};

void buildInstallLayoutFrom(InstallPaths& paths, const LayoutSources& sources);

// "C:\KX_localdata\" when drive C: exists; otherwise below SystemDrive, or
// on C: when that variable is empty.
QString localDataFolder(std::uint32_t logicalDrives, const QString& systemDrive);

// Slashes turned into backslashes and a trailing backslash added, cut at 100.
FixedNarrowString100 renderAppsOverrideFolder(const FixedNarrowString100& override);
