#include "sweep/file_time.h"

#include <algorithm>
#include <ctime>

namespace {

constexpr std::int64_t kTicksFrom1601To1970 = 116444736000000000LL;
constexpr std::int64_t kTicksPerSecond = 10000000LL;

}

#ifndef _WIN32
TimeStamp currentTime()
{
    return static_cast<TimeStamp>(std::time(nullptr));
}
#endif

// Sub-second parts are dropped, and times before 1970 truncate toward zero.
TimeStamp fileTimeToSeconds(std::uint32_t low, std::uint32_t high)
{
    const std::uint64_t ticks = (std::uint64_t(high) << 32) | low;
    return (static_cast<std::int64_t>(ticks) - kTicksFrom1601To1970) / kTicksPerSecond;
}

TimeStamp ageTime(TimeStamp written, TimeStamp changed, AgeBy ageBy)
{
    return ageBy == AgeBy::Newest ? std::max(written, changed) : written;
}

bool hasElapsed(TimeStamp& stamp, std::int64_t span, bool update, const TimeStamp* now)
{
    const TimeStamp current = now != nullptr ? *now : currentTime();
    if (current <= stamp + span)
        return false;
    if (update)
        stamp = current;
    return true;
}
