#include "sweep/dir_listing_win.h"

#include "sweep/listing_rules.h"

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

// An entry of a fetch carries the reparse tag where extended attributes would
// otherwise be counted.
void append(DirListing& listing, const FILE_FULL_DIR_INFO& entry)
{
    const QString name = QString::fromWCharArray(entry.FileName, entry.FileNameLength / sizeof(wchar_t));
    if (isSelfOrParent(name))
        return;
    listing.names.append(name);
    listing.times.append(entryTime(entry.LastWriteTime.LowPart, static_cast<std::uint32_t>(entry.LastWriteTime.HighPart),
                                   entry.CreationTime.LowPart, static_cast<std::uint32_t>(entry.CreationTime.HighPart)));
    listing.sizes.append(entry.EndOfFile.QuadPart);
    listing.allocations.append(entry.AllocationSize.QuadPart);
    listing.folderFlags.append((entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    listing.linkFlags.append(isLinkEntry(entry.FileAttributes, entry.EaSize));
    listing.readOnlyFlags.append((entry.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0);
    listing.offlineFlags.append(isOfflineEntry(entry.FileAttributes, entry.EaSize));
    listing.freesSpaceFlags.append(freesItsSpace(entry.FileAttributes, entry.EaSize));
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
    listing.names.clear();
    listing.times.clear();
    listing.sizes.clear();
    listing.allocations.clear();
    listing.folderFlags.clear();
    listing.linkFlags.clear();
    listing.readOnlyFlags.clear();
    listing.offlineFlags.clear();
    listing.freesSpaceFlags.clear();
}

// Whether there is a current entry.
bool atEntry(const DirListing& listing)
{
    return listing.index >= 0 && listing.index < listing.names.size();
}

}

void create(DirListing*& handle)
{
    handle = new DirListing;
}

DWORD open(DirListing*& handle, HANDLE folder, const QString& folderPath)
{
    if (handle == nullptr)
        return ERROR_INVALID_HANDLE;
    DirListing& listing = *handle;
    listing.prefix = folderPrefix(folderPath);
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
    if (listing.index < listing.names.size())
        return true;
    listing.isOpen = false;
    return false;
}

bool isFolder(DirListing*& handle)
{
    return handle != nullptr && atEntry(*handle) && handle->folderFlags.at(handle->index);
}

bool isLink(DirListing*& handle)
{
    return handle != nullptr && atEntry(*handle) && handle->linkFlags.at(handle->index);
}

bool isReadOnly(DirListing*& handle)
{
    return handle != nullptr && atEntry(*handle) && handle->readOnlyFlags.at(handle->index);
}

bool isOffline(DirListing*& handle)
{
    return handle != nullptr && atEntry(*handle) && handle->offlineFlags.at(handle->index);
}

bool freesSpace(DirListing*& handle)
{
    return handle != nullptr && atEntry(*handle) && handle->freesSpaceFlags.at(handle->index);
}

QString name(DirListing*& handle)
{
    if (handle == nullptr || !atEntry(*handle))
        return QString();
    return handle->names.at(handle->index);
}

QString fullPath(DirListing*& handle)
{
    const QString entry = name(handle);
    return entry.isEmpty() ? QString() : handle->prefix + entry;
}

TimeStamp time(DirListing*& handle)
{
    if (handle == nullptr || !atEntry(*handle))
        return 0;
    return handle->times.at(handle->index);
}

std::int64_t size(DirListing*& handle)
{
    if (handle == nullptr || !atEntry(*handle))
        return 0;
    return handle->sizes.at(handle->index);
}

std::int64_t allocation(DirListing*& handle)
{
    if (handle == nullptr || !atEntry(*handle))
        return 0;
    return handle->allocations.at(handle->index);
}

void destroy(DirListing*& handle)
{
    if (handle == nullptr)
        return;
    delete handle;
    handle = nullptr;
}

}
