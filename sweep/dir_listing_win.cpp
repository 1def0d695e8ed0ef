#include "sweep/dir_listing_win.h"

#include "sweep/listing_rules.h"
#include "text/path_normalize.h"

#include <vector>

// The platform's names for what the listing's rules spell out.
static_assert(kReparseTagDedup == static_cast<std::uint32_t>(IO_REPARSE_TAG_DEDUP));
static_assert(kReparseTagWof == static_cast<std::uint32_t>(IO_REPARSE_TAG_WOF));
static_assert(kReparseTagHsm == static_cast<std::uint32_t>(IO_REPARSE_TAG_HSM));
static_assert(kReparseTagOneDrive == static_cast<std::uint32_t>(IO_REPARSE_TAG_ONEDRIVE));
static_assert(kReparseTagNameSurrogate == static_cast<std::uint32_t>(IsReparseTagNameSurrogate(0xFFFFFFFFu)));
static_assert(kErrorNoMoreFiles == ERROR_NO_MORE_FILES && kErrorFileNotFound == ERROR_FILE_NOT_FOUND);
static_assert(kErrorInvalidParameter == ERROR_INVALID_PARAMETER && kErrorNotSupported == ERROR_NOT_SUPPORTED);
static_assert(kErrorInvalidFunction == ERROR_INVALID_FUNCTION && kErrorAccessDenied == ERROR_ACCESS_DENIED);
static_assert(kErrorSharingViolation == ERROR_SHARING_VIOLATION);
static_assert(kAttributeReparsePoint == FILE_ATTRIBUTE_REPARSE_POINT && kAttributeReadOnly == FILE_ATTRIBUTE_READONLY);
static_assert(kAttributeFolder == FILE_ATTRIBUTE_DIRECTORY);

namespace listing {

namespace {

// The first fetch starts the folder over; later ones go on from where the
// previous ended, until the platform says there are no more.
DWORD fetch(HANDLE folder, bool first, std::vector<std::uint64_t>& buffer)
{
    const FILE_INFO_BY_HANDLE_CLASS kind = first ? FileFullDirectoryRestartInfo : FileFullDirectoryInfo;
    const DWORD bytes = static_cast<DWORD>(buffer.size() * sizeof(std::uint64_t));
    if (GetFileInformationByHandleEx(folder, kind, buffer.data(), bytes))
        return ERROR_SUCCESS;
    return GetLastError();
}

// The kind takes the bits above the flags, below the packing's own.
enum EntryFlag : std::uint8_t {
    kFolder = 1,
    kReadOnly = 2,
    kFreesSpace = 4,
};
constexpr int kKindShift = 3;
static_assert((static_cast<int>(EntryKind::Loop) << kKindShift) < 0x80, "the kind fits in seven bits");

std::uint8_t flagsOf(const EntryFacts& facts)
{
    std::uint8_t flags = static_cast<std::uint8_t>(static_cast<std::uint8_t>(entryKind(facts)) << kKindShift);
    if ((facts.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        flags |= kFolder;
    if ((facts.attributes & FILE_ATTRIBUTE_READONLY) != 0)
        flags |= kReadOnly;
    if (freesItsSpace(facts.attributes, facts.reparseTag))
        flags |= kFreesSpace;
    return flags;
}

// An entry of a fetch carries the reparse tag where extended attributes would
// otherwise be counted.
void append(DirListing& listing, const FILE_FULL_DIR_INFO& entry)
{
    const QString name = QString::fromRawData(reinterpret_cast<const QChar*>(entry.FileName),
                                              static_cast<qsizetype>(entry.FileNameLength / sizeof(wchar_t)));
    if (isSelfOrParent(name))
        return;
    EntryValues values;
    const TimeStamp written =
        entryTime(entry.LastWriteTime.LowPart, static_cast<std::uint32_t>(entry.LastWriteTime.HighPart),
                  entry.CreationTime.LowPart, static_cast<std::uint32_t>(entry.CreationTime.HighPart));
    const TimeStamp changed =
        fileTimeToSeconds(entry.ChangeTime.LowPart, static_cast<std::uint32_t>(entry.ChangeTime.HighPart));
    values.time = ageTime(written, changed, listing.ageBy);
    values.size = entry.EndOfFile.QuadPart;
    values.allocation = entry.AllocationSize.QuadPart;
    EntryFacts facts;
    facts.name = name;
    facts.attributes = entry.FileAttributes;
    facts.reparseTag = entry.EaSize;
    facts.atVolumeRoot = listing.atVolumeRoot;
    values.flags = flagsOf(facts);
    packEntry(listing.entries, values, name);
}

DWORD readAll(DirListing& listing, HANDLE folder)
{
    // Large fetches: one call brings hundreds of entries.
    constexpr std::size_t kFetchBytes = 64 * 1024;
    std::vector<std::uint64_t> buffer(kFetchBytes / sizeof(std::uint64_t));
    for (bool first = true;; first = false) {
        const DWORD error = fetch(folder, first, buffer);
        if (endsListing(error, first))
            return ERROR_SUCCESS;
        if (error != ERROR_SUCCESS)
            return error;
        const auto* bytes = reinterpret_cast<const unsigned char*>(buffer.data());
        for (;;) {
            const auto& entry = *reinterpret_cast<const FILE_FULL_DIR_INFO*>(bytes);
            append(listing, entry);
            if (entry.NextEntryOffset == 0)
                break;
            bytes += entry.NextEntryOffset;
        }
    }
}

bool hasFlag(DirListing* handle, std::uint8_t flag)
{
    return handle != nullptr && handle->isOpen && (handle->values.flags & flag) != 0;
}

}

void create(DirListing*& handle)
{
    handle = new DirListing;
}

DWORD open(DirListing*& handle, HANDLE folder, const QString& folderPath, AgeBy ageBy, bool atVolumeRoot)
{
    if (handle == nullptr)
        return ERROR_INVALID_HANDLE;
    DirListing& listing = *handle;
    listing.prefix = folderPrefix(folderPath);
    listing.ageBy = ageBy;
    listing.atVolumeRoot = atVolumeRoot;
    clearEntries(listing.entries);
    const DWORD error = readAll(listing, folder);
    listing.isOpen = true;
    listing.values = EntryValues();
    listing.name.clear();
    return error;
}

bool next(DirListing*& handle)
{
    if (handle == nullptr || !handle->isOpen)
        return false;
    DirListing& listing = *handle;
    if (unpackEntry(listing.entries, listing.values, listing.name))
        return true;
    listing.isOpen = false;
    listing.name.clear();
    return false;
}

bool isFolder(DirListing*& handle)
{
    return hasFlag(handle, kFolder);
}

EntryKind kind(DirListing*& handle)
{
    if (handle == nullptr || !handle->isOpen)
        return EntryKind::Plain;
    return static_cast<EntryKind>(handle->values.flags >> kKindShift);
}

bool isReadOnly(DirListing*& handle)
{
    return hasFlag(handle, kReadOnly);
}

bool freesSpace(DirListing*& handle)
{
    return hasFlag(handle, kFreesSpace);
}

QString name(DirListing*& handle)
{
    return handle == nullptr ? QString() : handle->name;
}

QString fullPath(DirListing*& handle)
{
    const QString entry = name(handle);
    return entry.isEmpty() ? QString() : handle->prefix + entry;
}

TimeStamp time(DirListing*& handle)
{
    return handle == nullptr ? 0 : handle->values.time;
}

std::int64_t size(DirListing*& handle)
{
    return handle == nullptr ? 0 : handle->values.size;
}

std::int64_t allocation(DirListing*& handle)
{
    return handle == nullptr ? 0 : handle->values.allocation;
}

void destroy(DirListing*& handle)
{
    if (handle == nullptr)
        return;
    delete handle;
    handle = nullptr;
}

}
