#include "sweep/listing_rules.h"

namespace {

const QChar kBackslash = QLatin1Char('\\');

}

QString folderPrefix(const QString& folder)
{
    QString prefix = folder;
    prefix.replace(QLatin1Char('/'), kBackslash);
    if (!prefix.endsWith(kBackslash))
        prefix.append(kBackslash);
    return prefix;
}

// A last-write time whose upper word is zero lies within 430 seconds of 1601,
// which no real write does; the creation time stands in for it.
TimeStamp entryTime(std::uint32_t writeLow, std::uint32_t writeHigh, std::uint32_t creationLow,
                    std::uint32_t creationHigh)
{
    if (writeHigh == 0)
        return fileTimeToSeconds(creationLow, creationHigh);
    return fileTimeToSeconds(writeLow, writeHigh);
}

bool isCloudFilesTag(std::uint32_t reparseTag)
{
    return (reparseTag & ~kReparseTagCloudMask) == kReparseTagCloud;
}

bool isOfflineEntry(std::uint32_t attributes, std::uint32_t reparseTag)
{
    constexpr std::uint32_t kNotHere = kAttributeOffline | kAttributeRecallOnOpen | kAttributeRecallOnDataAccess;
    if ((attributes & kNotHere) != 0)
        return true;
    return (attributes & kAttributeReparsePoint) != 0 && isCloudFilesTag(reparseTag);
}

bool isSelfOrParent(const QString& name)
{
    return name == QLatin1String(".") || name == QLatin1String("..");
}
