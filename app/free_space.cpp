#include "app/free_space.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint64_t kMiB = 1024 * 1024;
constexpr double kPercent = 100.0;

}

std::uint64_t goalBytes(const FreeGoal& goal, std::uint64_t driveBytes)
{
    const double bytes = goal.isPercent ? goal.amount * static_cast<double>(driveBytes) / kPercent : goal.amount;
    return static_cast<std::uint64_t>(std::ceil(bytes));
}

GoalFault volumeGoal(const FreeGoal& low, const FreeGoal* high, std::uint64_t volumeBytes, VolumeGoal& goal)
{
    goal.low = goalBytes(low, volumeBytes);
    goal.high = high != nullptr ? goalBytes(*high, volumeBytes) : goal.low;
    if (goal.low > volumeBytes || goal.high > volumeBytes)
        return GoalFault::AboveVolume;
    return goal.high < goal.low ? GoalFault::HighBelowLow : GoalFault::None;
}

std::uint64_t bytesToFree(const VolumeGoal& goal, std::uint64_t freeBytes)
{
    return freeBytes >= goal.low ? 0 : goal.high - freeBytes;
}

Cutoff chooseCutoff(std::vector<SpaceCandidate> candidates, std::uint64_t missing, TimeStamp floor)
{
    std::sort(candidates.begin(), candidates.end(),
              [](const SpaceCandidate& a, const SpaceCandidate& b) { return a.time < b.time; });
    Cutoff chosen{floor, 0};
    std::uint64_t taken = 0;
    for (const SpaceCandidate& candidate : candidates) {
        if (taken >= missing && candidate.time >= chosen.cutoff)
            break;
        taken += static_cast<std::uint64_t>(candidate.allocation);
        if (taken >= missing && chosen.cutoff == floor)
            chosen.cutoff = std::min(candidate.time + 1, floor);
    }
    chosen.bytes = taken;
    return chosen;
}

std::uint64_t mebibytesDown(std::uint64_t bytes)
{
    return bytes / kMiB;
}

std::uint64_t mebibytesUp(std::uint64_t bytes)
{
    return (bytes + kMiB - 1) / kMiB;
}
