#pragma once
// A folder run's -v log beyond what is held in memory: the text goes on in a
// temporary file, deleted when it closes, and is printed from there in its
// order when the report is printed. A dry run over millions of files logs
// hundreds of megabytes.

#include "sweep/handles_win.h"

#include <QString>

// The log is held in memory up to this many UTF-16 units, 4 MiB.
constexpr qsizetype kHeldLogUnits = 2 * 1024 * 1024;

struct LogSpill {
    OwnedHandle file;
    // No file could be made or written: the log stays in memory.
    bool failed = false;
};

// Moves the log's text to the end of the spill file and empties the log.
// Where no file can be had, the log is left as it is.
void spillLog(LogSpill& spill, QString& log);

// Prints what was spilled, in its order, and empties the spill.
void printSpilled(LogSpill& spill);
