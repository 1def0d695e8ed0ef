#pragma once
// The free-space goal of -minfree: what it asks for, and which files a pass
// that frees space deletes to reach it.

#include "sweep/sweep.h"

#include <QString>

#include <cstdint>
#include <vector>

// A size in bytes, or a share of the drive's total size.
struct FreeGoal {
    double amount = 0;
    bool isPercent = false;
};

// A whole or decimal number above 0 followed by M, G or T (MiB, GiB, TiB, in
// either case) or by "%".
bool parseFreeGoal(const QString& text, FreeGoal& goal);

// A whole or decimal number of days, 0 or more.
bool parseMinAge(const QString& text, double& days);

std::uint64_t goalBytes(const FreeGoal& goal, std::uint64_t driveBytes);

// Files changed before cutoff go; they free bytes.
struct Cutoff {
    TimeStamp cutoff = 0;
    std::uint64_t bytes = 0;
};

// The oldest candidates whose space adds up to missing, and those changed in
// the same second as the youngest of them; all of them, with floor as the
// cutoff, when all together are not enough.
Cutoff chooseCutoff(std::vector<SpaceCandidate> candidates, std::uint64_t missing, TimeStamp floor);

// Whole MiB: free space rounded down, goals rounded up.
std::uint64_t mebibytesDown(std::uint64_t bytes);
std::uint64_t mebibytesUp(std::uint64_t bytes);

struct RunOptions;
struct RunTotals;

// After the age run: checks the goal once on the drive of the folder argument
// and, when it is not met, frees what is missing in one more pass, oldest
// files first. Prints the goal line; the exit code.
int reachFreeSpaceGoal(const RunOptions& options, RunTotals& totals);
