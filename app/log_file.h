#pragma once
// The -log file: every run appends what it prints, whole, in UTF-8.

#include <QString>

// Opens the file for appending, creating it when missing, shared for reading
// and deletion so that log shippers and rotation go on working, and for
// writing so that overlapping runs share one log, and starts the log with what
// was printed so far. False, with the error line printed, when
// it cannot be opened.
bool openLogFile(const QString& path);

// Prints the error line of a failed write to the log, if there was one.
void reportLogFailure();
