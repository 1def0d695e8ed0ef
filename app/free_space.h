#pragma once
// The free-space goal of -minfree: what it asks for, and which files a pass
// that frees space deletes to reach it.

#include "app/command_line.h"
#include "app/folder_run.h"
#include "sweep/sweep.h"

#include <cstdint>
#include <vector>

std::uint64_t goalBytes(const FreeGoal& goal, std::uint64_t driveBytes);

// The goals of -minfree and -freeto on one volume, in bytes: below low, the
// freeing pass frees up to high. Without -freeto both are the same.
struct VolumeGoal {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
};

// Why goals cannot hold on a volume of this size.
enum class GoalFault { None, AboveVolume, HighBelowLow };

// The goals on a volume of volumeBytes; high is null without -freeto.
GoalFault volumeGoal(const FreeGoal& low, const FreeGoal* high, std::uint64_t volumeBytes, VolumeGoal& goal);

// What the freeing pass must free: nothing while the low goal is met.
std::uint64_t bytesToFree(const VolumeGoal& goal, std::uint64_t freeBytes);

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

// After the age run, for each volume the folders of the age run are on:
// checks the goal once and, when it is not met, frees what is missing in one
// more pass over the folders on that volume, oldest files first. Prints one
// goal line per volume; the exit code.
int reachFreeSpaceGoal(const RunOptions& options, const std::vector<LocatedFolder>& located, RunTotals& totals);

// -check: prints each volume's goal line as it stands, and touches nothing.
int checkFreeSpaceGoal(const RunOptions& options);
