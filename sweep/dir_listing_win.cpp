#include "sweep/dir_listing.h"

#include "sweep/file_ops.h"
#include "sweep/listing_rules.h"

#include <vector>

namespace {

// Reparse tags whose folders keep their content in place: they are hydrated,
// deduplicated, compressed or tiered, but they lead nowhere else.
const DWORD kInPlaceReparseTags[] = {
    static_cast<DWORD>(IO_REPARSE_TAG_HSM),          static_cast<DWORD>(IO_REPARSE_TAG_HSM2),
    static_cast<DWORD>(IO_REPARSE_TAG_SIS),          static_cast<DWORD>(IO_REPARSE_TAG_WIM),
    static_cast<DWORD>(IO_REPARSE_TAG_DFSR),         static_cast<DWORD>(IO_REPARSE_TAG_DEDUP),
    static_cast<DWORD>(IO_REPARSE_TAG_FILE_PLACEHOLDER), static_cast<DWORD>(IO_REPARSE_TAG_WOF),
    static_cast<DWORD>(IO_REPARSE_TAG_PROJFS),       static_cast<DWORD>(IO_REPARSE_TAG_STORAGE_SYNC),
    static_cast<DWORD>(IO_REPARSE_TAG_ONEDRIVE),
};

bool isCloudFilesTag(DWORD reparseTag)
{
    return (reparseTag & ~static_cast<DWORD>(IO_REPARSE_TAG_CLOUD_MASK)) == static_cast<DWORD>(IO_REPARSE_TAG_CLOUD);
}

bool keepsDataInPlace(DWORD reparseTag)
{
    if (isCloudFilesTag(reparseTag))
        return true;
    for (const DWORD tag : kInPlaceReparseTags) {
        if (reparseTag == tag)
            return true;
    }
    return false;
}

}

bool isLinkEntry(DWORD attributes, DWORD reparseTag)
{
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return false;
    if (IsReparseTagNameSurrogate(reparseTag))
        return true;
    return !keepsDataInPlace(reparseTag);
}

namespace listing {

namespace {

bool foundFolder(const WIN32_FIND_DATAW& data)
{
    return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

QString foundName(const WIN32_FIND_DATAW& data)
{
    return QString::fromWCharArray(data.cFileName);
}

TimeStamp foundTime(const WIN32_FIND_DATAW& data)
{
    return entryTime(data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime,
                     data.ftCreationTime.dwLowDateTime, data.ftCreationTime.dwHighDateTime);
}

// The find data carries the reparse tag in dwReserved0.
bool foundLink(const WIN32_FIND_DATAW& data)
{
    return isLinkEntry(data.dwFileAttributes, data.dwReserved0);
}

std::int64_t foundSize(const WIN32_FIND_DATAW& data)
{
    return static_cast<std::int64_t>((std::uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow);
}

void closeListing(DirListing& listing)
{
    if (listing.findHandle != INVALID_HANDLE_VALUE)
        FindClose(listing.findHandle);
    listing.findHandle = INVALID_HANDLE_VALUE;
    listing.isOpen = false;
    listing.fromLists = false;
    listing.namesAreFullPaths = false;
    listing.haveLists = false;
}

void clearLists(DirListing& listing)
{
    listing.names.clear();
    listing.times.clear();
    listing.sizes.clear();
    listing.folderFlags.clear();
    listing.linkFlags.clear();
}

bool isAccepted(const DirListing& listing)
{
    const QString name = foundName(listing.findData);
    if (foundFolder(listing.findData))
        return acceptsFolder(name, listing.includeFolders);
    return acceptsFile(name, listing.suffixFilters, listing.prefixFilters, listing.containsFilters);
}

bool startSearch(DirListing& listing)
{
    const QString pattern = patternForSearchCall(listing.searchPattern);
    // The short 8.3 name is never read, and not fetching it is markedly faster
    // on NTFS.
    listing.findHandle = FindFirstFileExW(asWide(pattern.utf16()), FindExInfoBasic, &listing.findData,
                                          FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    // Windows before 7 does not know large fetches and refuses the flag.
    if (listing.findHandle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_INVALID_PARAMETER)
        listing.findHandle = FindFirstFileW(asWide(pattern.utf16()), &listing.findData);
    return listing.findHandle != INVALID_HANDLE_VALUE;
}

// Advances the search to the next accepted entry. A folder that cannot be
// searched yields nothing, and nothing is reported.
bool nextFound(DirListing& listing)
{
    for (;;) {
        if (listing.findHandle == INVALID_HANDLE_VALUE) {
            if (!startSearch(listing)) {
                closeListing(listing);
                return false;
            }
        } else if (!FindNextFileW(listing.findHandle, &listing.findData)) {
            // The end of the folder and a failure midway are deliberately
            // treated alike: either way the listing ends quietly.
            closeListing(listing);
            return false;
        }
        if (isAccepted(listing))
            return true;
    }
}

// The whole folder is read and the search closed before the first entry is
// handed out, so the caller may delete entries while it walks through them.
void readAll(DirListing& listing, bool sort, bool descending)
{
    while (nextFound(listing)) {
        listing.names.append(foundName(listing.findData));
        listing.times.append(foundTime(listing.findData));
        listing.sizes.append(foundSize(listing.findData));
        listing.folderFlags.append(foundFolder(listing.findData));
        listing.linkFlags.append(foundLink(listing.findData));
    }
    if (sort)
        sortEntries({listing.names, listing.times, listing.sizes, listing.folderFlags, listing.linkFlags}, descending);
    closeListing(listing);
    listing.isOpen = true;
    listing.fromLists = true;
    listing.haveLists = true;
    listing.index = -1;
}

// The first fetch starts the folder over; later ones go on from where the
// previous ended, until the platform says there are no more.
DWORD fetchHeld(HANDLE folder, bool first, std::vector<std::uint64_t>& buffer)
{
    const FILE_INFO_BY_HANDLE_CLASS kind = first ? FileFullDirectoryRestartInfo : FileFullDirectoryInfo;
    const DWORD bytes = static_cast<DWORD>(buffer.size() * sizeof(std::uint64_t));
    if (GetFileInformationByHandleEx(folder, kind, buffer.data(), bytes))
        return ERROR_SUCCESS;
    return GetLastError();
}

// The find data's fields, from one entry of a fetch. The entry carries the
// reparse tag where extended attributes would otherwise be counted.
void appendHeldEntry(DirListing& listing, const FILE_FULL_DIR_INFO& entry)
{
    const QString name = QString::fromWCharArray(entry.FileName, entry.FileNameLength / sizeof(wchar_t));
    const bool folder = (entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (folder ? !acceptsFolder(name, true)
               : !acceptsFile(name, listing.suffixFilters, listing.prefixFilters, listing.containsFilters))
        return;
    listing.names.append(name);
    listing.times.append(entryTime(entry.LastWriteTime.LowPart, static_cast<std::uint32_t>(entry.LastWriteTime.HighPart),
                                   entry.CreationTime.LowPart, static_cast<std::uint32_t>(entry.CreationTime.HighPart)));
    listing.sizes.append(entry.EndOfFile.QuadPart);
    listing.folderFlags.append(folder);
    listing.linkFlags.append(isLinkEntry(entry.FileAttributes, entry.EaSize));
}

DWORD readHeld(DirListing& listing, HANDLE folder)
{
    // Large fetches, as the directory search is asked for: one call brings
    // hundreds of entries.
    constexpr std::size_t kFetchBytes = 64 * 1024;
    std::vector<std::uint64_t> buffer(kFetchBytes / sizeof(std::uint64_t));
    for (bool first = true;; first = false) {
        const DWORD error = fetchHeld(folder, first, buffer);
        if (error == ERROR_NO_MORE_FILES)
            return ERROR_SUCCESS;
        if (error != ERROR_SUCCESS)
            return error;
        const auto* bytes = reinterpret_cast<const unsigned char*>(buffer.data());
        for (;;) {
            const auto& entry = *reinterpret_cast<const FILE_FULL_DIR_INFO*>(bytes);
            appendHeldEntry(listing, entry);
            if (entry.NextEntryOffset == 0)
                break;
            bytes += entry.NextEntryOffset;
        }
    }
}

// Whether the properties come from the lists, and there is an entry there.
bool atListEntry(const DirListing& listing)
{
    return listing.haveLists && listing.index >= 0 && listing.index < listing.names.size();
}

// Whether the properties come from the search, and it has found an entry.
bool atFoundEntry(const DirListing& listing)
{
    return !listing.haveLists && listing.findHandle != INVALID_HANDLE_VALUE;
}

}

void create(DirListingHandle& handle)
{
    handle = new DirListing;
    handle->owner = &handle;
}

void open(DirListingHandle& handle, const QString& folder, bool includeFolders, bool readAllFirst, bool sort,
          bool descending)
{
    if (handle == nullptr)
        return;
    DirListing& listing = *handle;
    closeListing(listing);
    listing.includeFolders = includeFolders;

    const ListingPaths paths = listingPaths(folder, fileExists);
    listing.folder = paths.folder;
    listing.prefix = paths.prefix;
    listing.searchPattern = paths.searchPattern;

    clearLists(listing);
    listing.index = -1;
    listing.isOpen = true;

    if (readAllFirst || sort)
        readAll(listing, sort, descending);
}

DWORD openHeld(DirListingHandle& handle, HANDLE folder, const QString& folderPath)
{
    if (handle == nullptr)
        return ERROR_INVALID_HANDLE;
    DirListing& listing = *handle;
    closeListing(listing);
    listing.includeFolders = true;
    listing.folder = folderPath;
    listing.prefix = folderPrefix(folderPath);
    listing.searchPattern.clear();
    clearLists(listing);
    const DWORD error = readHeld(listing, folder);
    listing.isOpen = true;
    listing.fromLists = true;
    listing.haveLists = true;
    listing.index = -1;
    return error;
}

bool next(DirListingHandle& handle)
{
    if (handle == nullptr || !handle->isOpen)
        return false;
    DirListing& listing = *handle;
    if (!listing.fromLists)
        return nextFound(listing);

    ++listing.index;
    if (listing.index < listing.names.size())
        return true;
    listing.isOpen = false;
    return false;
}

bool isFolder(DirListingHandle& handle)
{
    if (handle == nullptr)
        return false;
    if (atListEntry(*handle))
        return handle->folderFlags.at(handle->index);
    return atFoundEntry(*handle) && foundFolder(handle->findData);
}

bool isLink(DirListingHandle& handle)
{
    if (handle == nullptr)
        return false;
    if (atListEntry(*handle))
        return handle->linkFlags.at(handle->index);
    return atFoundEntry(*handle) && foundLink(handle->findData);
}

QString name(DirListingHandle& handle)
{
    if (handle == nullptr)
        return QString();
    if (atListEntry(*handle))
        return handle->names.at(handle->index);
    return atFoundEntry(*handle) ? foundName(handle->findData) : QString();
}

QString fullPath(DirListingHandle& handle)
{
    const QString entry = name(handle);
    return entry.isEmpty() ? QString() : handle->prefix + entry;
}

TimeStamp time(DirListingHandle& handle)
{
    if (handle == nullptr)
        return 0;
    if (atListEntry(*handle))
        return handle->times.at(handle->index);
    return atFoundEntry(*handle) ? foundTime(handle->findData) : 0;
}

std::int64_t size(DirListingHandle& handle)
{
    if (handle == nullptr)
        return 0;
    if (atListEntry(*handle))
        return handle->sizes.at(handle->index);
    return atFoundEntry(*handle) ? foundSize(handle->findData) : 0;
}

void addSuffixFilter(DirListingHandle& handle, const QString& text)
{
    if (handle != nullptr && !text.isEmpty())
        handle->suffixFilters.append(text);
}

void addPrefixFilter(DirListingHandle& handle, const QString& text)
{
    if (handle != nullptr && !text.isEmpty())
        handle->prefixFilters.append(text);
}

void addContainsFilter(DirListingHandle& handle, const QString& text)
{
    if (handle != nullptr && !text.isEmpty())
        handle->containsFilters.append(text);
}

void close(DirListingHandle& handle)
{
    if (handle != nullptr)
        closeListing(*handle);
}

void destroy(DirListingHandle& handle)
{
    if (handle == nullptr)
        return;
    closeListing(*handle);
    delete handle;
    handle = nullptr;
}

}
