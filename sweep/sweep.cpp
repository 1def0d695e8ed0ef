#include "sweep/sweep.h"

namespace {

constexpr std::uint32_t kSecondsPerMinute = 60;
constexpr std::int64_t kBytesPerKiB = 1024;

}

std::int64_t ageLimitSeconds(std::int32_t maxAgeMinutes)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(maxAgeMinutes) * kSecondsPerMinute);
}

bool isOldEnough(TimeStamp entryTime, std::int32_t maxAgeMinutes, TimeStamp now)
{
    if (maxAgeMinutes <= 0)
        return true;
    return hasElapsed(entryTime, ageLimitSeconds(maxAgeMinutes), false, &now);
}

std::int64_t roundedKiB(std::int64_t size)
{
    return (size + kBytesPerKiB / 2) / kBytesPerKiB;
}

const QString* matchingSuffix(const QStringList* suffixes, const QString& name)
{
    if (suffixes == nullptr)
        return nullptr;
    for (const QString& suffix : *suffixes) {
        if (name.endsWith(suffix, Qt::CaseInsensitive))
            return &suffix;
    }
    return nullptr;
}
