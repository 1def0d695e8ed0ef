#pragma once
// The banner, the usage text and the option loop of the entry point.

#include "sweep/file_time.h"

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
constexpr int kExitGoalNotReached = 4;
constexpr int kExitIncomplete = 5;
constexpr int kExitAlreadyRunning = 6;

constexpr std::int32_t kDefaultDaysOld = 14;

// A size in bytes, or a share of the drive's total size.
struct FreeGoal {
    double amount = 0;
    bool isPercent = false;
};

// A whole or decimal number in ASCII digits above 0 followed by M, G or T
// (MiB, GiB, TiB, in either case) or by "%": a size below 16 EiB, or at most
// 99%, since a goal of the whole volume can never be met. -minfree and
// -freeto both read so.
bool parseFreeGoal(const QString& text, FreeGoal& goal);

// A whole or decimal number of days in ASCII digits, from 0 to a billion.
bool parseMinAge(const QString& text, double& days);

struct RunOptions {
    std::int32_t daysOld = kDefaultDaysOld;
    bool verbose = false;
    bool dryRun = false;
    QString directory;
    bool hasDirectory = false;
    // Names below the directory that are never deleted, in command-line order.
    QStringList keepPatterns;
    // The file each run's report is appended to.
    QString logFile;
    bool hasLogFile = false;
    // After the age run, the oldest files go until the drive has this much
    // free, none younger than minAgeDays.
    FreeGoal freeGoal;
    bool hasFreeGoal = false;
    // Once below freeGoal, the oldest files go until this much is free.
    FreeGoal freeToGoal;
    bool hasFreeToGoal = false;
    // -freeto as given, for the error when -minfree is missing.
    QString freeToText;
    // Only says whether each volume meets the goal, and touches nothing.
    bool check = false;
    double minAgeDays = 1;
    // -minage as given; empty when it is not, as an empty value is refused.
    QString minAgeText;
    // What a file's age, and an emptied folder's, counts from.
    AgeBy ageBy = AgeBy::Write;
    // The file this run's figures are written to, for Prometheus.
    QString promFile;
    bool hasPromFile = false;
};

void printBanner();
QString usageText();
void printUsage();

// The tool's own options, as the command line matches them.
QStringList optionNames();

// Reads the options from left to right, the program's name first: the tool's
// own options, the values of the root flags, and one directory, then checks
// that the directory can be one. Returns kExitOk, or at the first bad
// argument the exit code after its error line has been printed.
int readOptions(const QStringList& arguments, RunOptions& options);
