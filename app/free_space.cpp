#include "app/free_space.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kBytesPerMiB = 1024.0 * 1024.0;
constexpr std::uint64_t kMiB = 1024 * 1024;
constexpr double kPercent = 100.0;
constexpr double kMostPercent = 99.0;
// 2^64: a goal of this many bytes or more has no 64-bit value.
constexpr double kFirstOverflowingBytes = 18446744073709551616.0;
// Seconds of this many days still fit a time stamp, whatever the clock says.
constexpr double kMostMinAgeDays = 1e9;

bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// ASCII digits, at most one decimal point between digits.
bool isDecimal(const QString& text)
{
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (text.isEmpty() || point == 0 || point == text.size() - 1)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i != point && !isAsciiDigit(text.at(i)))
            return false;
    }
    return text.count(QLatin1Char('.')) <= 1;
}

double unitBytes(QChar unit)
{
    switch (unit.toUpper().unicode()) {
    case u'M':
        return kBytesPerMiB;
    case u'G':
        return kBytesPerMiB * 1024;
    case u'T':
        return kBytesPerMiB * 1024 * 1024;
    default:
        return 0;
    }
}

}

bool parseFreeGoal(const QString& text, FreeGoal& goal)
{
    if (text.size() < 2 || !isDecimal(text.chopped(1)))
        return false;
    const QChar unit = text.back();
    goal.isPercent = unit == QLatin1Char('%');
    const double perUnit = goal.isPercent ? 1 : unitBytes(unit);
    goal.amount = text.chopped(1).toDouble() * perUnit;
    const bool inRange = goal.isPercent ? goal.amount <= kMostPercent : goal.amount < kFirstOverflowingBytes;
    return perUnit > 0 && goal.amount > 0 && inRange;
}

bool parseMinAge(const QString& text, double& days)
{
    if (!isDecimal(text))
        return false;
    days = text.toDouble();
    return days <= kMostMinAgeDays;
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
