#include "sweep/listing_rules.h"

#include <QStringList>

#include <cstddef>

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

namespace {

// Reparse tags whose entries keep their content in place: they are hydrated,
// deduplicated, compressed or tiered, but they lead nowhere else.
const std::uint32_t kInPlaceReparseTags[] = {
    kReparseTagHsm,  kReparseTagHsm2,           kReparseTagSis, kReparseTagWim,
    kReparseTagDfsr, kReparseTagDedup,          kReparseTagFilePlaceholder,
    kReparseTagWof,  kReparseTagProjFs,         kReparseTagStorageSync,
    kReparseTagOneDrive,
};

bool keepsDataInPlace(std::uint32_t reparseTag)
{
    if (isCloudFilesTag(reparseTag))
        return true;
    for (const std::uint32_t tag : kInPlaceReparseTags) {
        if (reparseTag == tag)
            return true;
    }
    return false;
}

bool isReparsePoint(std::uint32_t attributes)
{
    return (attributes & kAttributeReparsePoint) != 0;
}

const char* const kVolumeSystemFolders[] = {"System Volume Information", "$RECYCLE.BIN"};
const char* const kVolumeSystemFiles[] = {"pagefile.sys", "swapfile.sys", "hiberfil.sys", "DumpStack.log.tmp"};

template <std::size_t N>
bool isOneOf(const QString& name, const char* const (&names)[N])
{
    for (const char* known : names) {
        if (name.compare(QLatin1String(known), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool isVolumeSystemName(const QString& name, bool isFolder)
{
    return isFolder ? isOneOf(name, kVolumeSystemFolders) : isOneOf(name, kVolumeSystemFiles);
}

bool isLink(std::uint32_t attributes, bool tagKnown, std::uint32_t reparseTag)
{
    if (!isReparsePoint(attributes))
        return false;
    if (!tagKnown || (reparseTag & kReparseTagNameSurrogate) != 0)
        return true;
    return !keepsDataInPlace(reparseTag);
}

bool isOffline(std::uint32_t attributes, std::uint32_t reparseTag)
{
    constexpr std::uint32_t kNotHere = kAttributeOffline | kAttributeRecallOnOpen | kAttributeRecallOnDataAccess;
    if ((attributes & kNotHere) != 0)
        return true;
    return isReparsePoint(attributes) && isCloudFilesTag(reparseTag);
}

}

bool isUnsupportedRequest(std::uint32_t error)
{
    return error == kErrorInvalidParameter || error == kErrorNotSupported || error == kErrorInvalidFunction;
}

bool endsListing(std::uint32_t error, bool firstFetch)
{
    return error == kErrorNoMoreFiles || (firstFetch && error == kErrorFileNotFound);
}

bool freesItsSpace(std::uint32_t attributes, std::uint32_t reparseTag)
{
    return !isReparsePoint(attributes) || (reparseTag != kReparseTagDedup && reparseTag != kReparseTagWof);
}

EntryKind entryKind(const EntryFacts& facts)
{
    const bool isFolder = (facts.attributes & kAttributeFolder) != 0;
    if (facts.atVolumeRoot && isVolumeSystemName(facts.name, isFolder))
        return EntryKind::VolumeSystem;
    if (isOffline(facts.attributes, facts.reparseTag))
        return EntryKind::Offline;
    if (isLink(facts.attributes, facts.tagKnown, facts.reparseTag))
        return EntryKind::Link;
    return facts.onPath ? EntryKind::Loop : EntryKind::Plain;
}

bool isSelfOrParent(const QString& name)
{
    return name == QLatin1String(".") || name == QLatin1String("..");
}

namespace {

QStringList placeNames(const QString& place)
{
    QStringList names = place.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    for (QString& name : names) {
        while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
            name.chop(1);
    }
    return names;
}

}

bool standsAt(const QString& current, const QString& expected)
{
    return !current.isEmpty() && placeNames(current) == placeNames(expected);
}
