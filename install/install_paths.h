#pragma once
// The folders of an installation of the suite, derived from the installation
// root and the executables root by fixed rules, as every tool of the suite
// derives them.

#include "text/fixed_string.h"

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
void buildInstallLayout(InstallPaths& paths, int argc, char* argv[], bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride,
                        bool win64Binaries);

// The per-machine folders below the local data folder (entry 21).
void buildLocalDataLayout(InstallPaths& paths);
