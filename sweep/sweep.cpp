#include "sweep/sweep.h"

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kBytesPerKiB = 1024;

}

std::int64_t ageLimitSeconds(std::int32_t daysOld)
{
    return daysOld * kSecondsPerDay;
}

// Freeing space never takes what the age limit left for its own reasons: a
// file whose deletion failed is not tried twice, and in a dry run the files
// the age limit would delete are not counted twice.
bool isDue(TimeStamp time, const SweepSettings& settings, TimeStamp now)
{
    const bool oldEnough = isOldEnough(time, settings.ageLimitSeconds, now);
    if (!settings.freeingSpace)
        return oldEnough;
    return !oldEnough && time < settings.changedBefore;
}

bool isOldEnough(TimeStamp entryTime, std::int64_t limitSeconds, TimeStamp now)
{
    if (limitSeconds <= 0)
        return true;
    return hasElapsed(entryTime, limitSeconds, false, &now);
}

bool removesEmptiedFolder(bool emptiedByRun, TimeStamp folderAge, std::int64_t limitSeconds, TimeStamp now)
{
    return emptiedByRun || isOldEnough(folderAge, limitSeconds, now);
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
