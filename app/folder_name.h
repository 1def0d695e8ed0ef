#pragma once
// What the folder argument must be before anything is touched.

#include <QString>

// False for a text holding a quote, "<", ">", "|", "?" or a control
// character: no folder is called so, and a quote there is the sign of a
// quoting slip that swallowed the rest of the command line.
bool canBeFolderName(const QString& folder);

// A drive letter, a colon and a separator, or a share: "\\server\share". A
// relative path would be taken from the current folder, which for a scheduled
// task is the system's own.
bool isFullPath(const QString& folder);
