#pragma once
// Whether a folder is an installation of the suite, and the relink file that
// lets an installation point elsewhere.

#include "install/install_paths.h"

#include <QString>

bool isValidRoot(const QString& root);

enum class RelinkOutcome {
    NoRelinkFile,
    Read,
    CannotOpen,
};

// Reads sub\cfg_global\relink_win.cfg below entry 0; may move entry 0 or set
// entry 29.
RelinkOutcome readRelinkFile(InstallPaths& paths, QString& rootLog);
