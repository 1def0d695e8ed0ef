#pragma once
// One run at a time per folder, across sessions: the scheduled task as SYSTEM
// and an administrator's run in an elevated console see each other.

#include <QString>

// Takes the lock of runs on folder, its spelling's letter case and separators
// aside, for the rest of the process. False when another run holds it.
bool lockFolderRuns(const QString& folder);
