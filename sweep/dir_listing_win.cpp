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

enum EntryFlag : std::uint8_t {
    kFolder = 1,
    kLink = 2,
    kReadOnly = 4,
    kOffline = 8,
    kFreesSpace = 16,
};

// The longest name a block takes, and the block's length.
constexpr std::size_t kNameBlockUnits = 65535;

// Where the name goes: the last block, or a new one when it is full. The
// first block grows with the folder; a folder that fills it is a large one,
// and each later block is taken whole at once.
void storeName(DirListing& listing, const char16_t* units, std::size_t length, ListedEntry& entry)
{
    if (listing.nameBlocks.empty() || listing.nameBlocks.back().size() + length > kNameBlockUnits) {
        listing.nameBlocks.emplace_back();
        if (listing.nameBlocks.size() > 1)
            listing.nameBlocks.back().reserve(kNameBlockUnits);
    }
    std::u16string& block = listing.nameBlocks.back();
    entry.nameBlock = static_cast<std::uint32_t>(listing.nameBlocks.size() - 1);
    entry.nameStart = static_cast<std::uint16_t>(block.size());
    entry.nameLength = static_cast<std::uint16_t>(length);
    block.append(units, length);
}

std::uint8_t flagsOf(DWORD attributes, DWORD reparseTag)
{
    std::uint8_t flags = 0;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        flags |= kFolder;
    if (isLinkEntry(attributes, reparseTag))
        flags |= kLink;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        flags |= kReadOnly;
    if (isOfflineEntry(attributes, reparseTag))
        flags |= kOffline;
    if (freesItsSpace(attributes, reparseTag))
        flags |= kFreesSpace;
    return flags;
}

// An entry of a fetch carries the reparse tag where extended attributes would
// otherwise be counted.
void append(DirListing& listing, const FILE_FULL_DIR_INFO& entry)
{
    const auto* units = reinterpret_cast<const char16_t*>(entry.FileName);
    const std::size_t length = entry.FileNameLength / sizeof(wchar_t);
    if (isSelfOrParent(QString::fromRawData(reinterpret_cast<const QChar*>(units), static_cast<qsizetype>(length))))
        return;
    ListedEntry listed;
    const TimeStamp written =
        entryTime(entry.LastWriteTime.LowPart, static_cast<std::uint32_t>(entry.LastWriteTime.HighPart),
                  entry.CreationTime.LowPart, static_cast<std::uint32_t>(entry.CreationTime.HighPart));
    const TimeStamp changed =
        fileTimeToSeconds(entry.ChangeTime.LowPart, static_cast<std::uint32_t>(entry.ChangeTime.HighPart));
    listed.time = ageTime(written, changed, listing.ageBy);
    listed.size = entry.EndOfFile.QuadPart;
    listed.allocation = entry.AllocationSize.QuadPart;
    listed.flags = flagsOf(entry.FileAttributes, entry.EaSize);
    storeName(listing, units, length, listed);
    listing.entries.push_back(listed);
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

void clearLists(DirListing& listing)
{
    listing.entries.clear();
    listing.nameBlocks.clear();
}

// Whether there is a current entry.
bool atEntry(const DirListing& listing)
{
    return listing.index >= 0 && static_cast<std::size_t>(listing.index) < listing.entries.size();
}

const ListedEntry* current(DirListing* handle)
{
    if (handle == nullptr || !atEntry(*handle))
        return nullptr;
    return &handle->entries[static_cast<std::size_t>(handle->index)];
}

bool hasFlag(DirListing* handle, std::uint8_t flag)
{
    const ListedEntry* entry = current(handle);
    return entry != nullptr && (entry->flags & flag) != 0;
}

}

void create(DirListing*& handle)
{
    handle = new DirListing;
}

DWORD open(DirListing*& handle, HANDLE folder, const QString& folderPath, AgeBy ageBy)
{
    if (handle == nullptr)
        return ERROR_INVALID_HANDLE;
    DirListing& listing = *handle;
    listing.prefix = folderPrefix(folderPath);
    listing.ageBy = ageBy;
    clearLists(listing);
    const DWORD error = readAll(listing, folder);
    listing.isOpen = true;
    listing.index = -1;
    return error;
}

bool next(DirListing*& handle)
{
    if (handle == nullptr || !handle->isOpen)
        return false;
    DirListing& listing = *handle;
    ++listing.index;
    if (atEntry(listing))
        return true;
    listing.isOpen = false;
    return false;
}

bool isFolder(DirListing*& handle)
{
    return hasFlag(handle, kFolder);
}

bool isLink(DirListing*& handle)
{
    return hasFlag(handle, kLink);
}

bool isReadOnly(DirListing*& handle)
{
    return hasFlag(handle, kReadOnly);
}

bool isOffline(DirListing*& handle)
{
    return hasFlag(handle, kOffline);
}

bool freesSpace(DirListing*& handle)
{
    return hasFlag(handle, kFreesSpace);
}

QString name(DirListing*& handle)
{
    const ListedEntry* entry = current(handle);
    if (entry == nullptr)
        return QString();
    const std::u16string& block = handle->nameBlocks[entry->nameBlock];
    return QString::fromUtf16(block.data() + entry->nameStart, entry->nameLength);
}

QString fullPath(DirListing*& handle)
{
    const QString entry = name(handle);
    return entry.isEmpty() ? QString() : handle->prefix + entry;
}

TimeStamp time(DirListing*& handle)
{
    const ListedEntry* entry = current(handle);
    return entry == nullptr ? 0 : entry->time;
}

std::int64_t size(DirListing*& handle)
{
    const ListedEntry* entry = current(handle);
    return entry == nullptr ? 0 : entry->size;
}

std::int64_t allocation(DirListing*& handle)
{
    const ListedEntry* entry = current(handle);
    return entry == nullptr ? 0 : entry->allocation;
}

void destroy(DirListing*& handle)
{
    if (handle == nullptr)
        return;
    delete handle;
    handle = nullptr;
}

}
