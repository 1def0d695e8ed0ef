#pragma once
// The banner, the usage text and the option loop of the entry point.

#include <QString>
#include <QStringList>

#include <cstdint>

// Three arguments after the program name are the minimum, even when fewer
// would be complete: a directory alone is refused.
constexpr int kMinimumArgc = 4;

constexpr int kExitOk = 0;
constexpr int kExitUsage = -1;
constexpr int kExitRootNotFound = 1;
constexpr int kExitBadOption = 2;
constexpr int kExitBadDaysOld = 3;

constexpr std::int32_t kDefaultDaysOld = 14;

struct RunOptions {
    std::int32_t daysOld = kDefaultDaysOld;
    bool verbose = false;
    bool dryRun = false;
    QString directory;
    // Where on the command line the directory stands; 0 when it is not given.
    int directoryIndex = 0;
    // Names below the directory that are never deleted, in command-line order.
    QStringList keepPatterns;
};

void printBanner();
void printUsage();

// Reads the options from left to right: -do, -keep, -v, -dryrun, the values
// of the root flags, and one directory. Returns kExitOk, or at the first bad
// argument the exit code after its error line has been printed.
int readOptions(int argc, char* argv[], RunOptions& options);

// Argument index of the command line as Windows holds it, in UTF-16, so that
// a folder named outside the 8-bit code page reaches the tool whole. Empty
// when the line does not split into argc arguments as the run-time library
// split it.
QString wideArgument(int index, int argc);
