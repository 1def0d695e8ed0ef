#include "sweep/folder_hold_win.h"

#include "sweep/dir_listing_win.h"
#include "sweep/file_ops.h"
#include "text/path_normalize.h"

#include <winternl.h>

#include <vector>

namespace {

// Reading the folder's content is what makes the handle count for sharing: a
// handle that may only read attributes would not stop a deletion.
constexpr DWORD kHoldAccess = FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES;
// The hold shares everything, so a job may remove or rename its folder while
// the sweep is anywhere in it; the pin shares no deletion.
constexpr DWORD kHoldSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kPinSharing = FILE_SHARE_READ | FILE_SHARE_WRITE;
// Removal opens the folder as the platform's own removal does.
constexpr DWORD kRemovalSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kNamedFolderFlags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_NO_RECALL;
constexpr ULONG kFolderOptions = FILE_DIRECTORY_FILE | FILE_OPEN_FOR_BACKUP_INTENT;
// The status of a name longer than the buffer; ntstatus.h would clash with
// the Win32 headers.
constexpr NTSTATUS kStatusBufferOverflow = static_cast<NTSTATUS>(0x80000005);

// The folder's number on its volume. The handles compared are opened in the
// same held parent, or by the path just swept, so they are on one volume;
// asking for the volume too costs Wine a look at every drive.
bool readFolderId(HANDLE folder, std::uint64_t& id, DWORD& error)
{
    IO_STATUS_BLOCK status = {};
    FILE_INTERNAL_INFORMATION info = {};
    const NTSTATUS result = NtQueryInformationFile(folder, &status, &info, sizeof info, FileInternalInformation);
    error = NT_SUCCESS(result) ? static_cast<DWORD>(ERROR_SUCCESS) : RtlNtStatusToDosError(result);
    id = static_cast<std::uint64_t>(info.IndexNumber.QuadPart);
    return NT_SUCCESS(result);
}

// The tag is asked for only where the attributes show a reparse point: FAT
// and exFAT refuse the question for every folder.
EntryFacts factsOf(HANDLE folder, const QString& name, DWORD attributes)
{
    EntryFacts facts{name, attributes};
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return facts;
    FILE_ATTRIBUTE_TAG_INFO info = {};
    facts.tagKnown = GetFileInformationByHandleEx(folder, FileAttributeTagInfo, &info, sizeof info) != FALSE;
    facts.reparseTag = info.ReparseTag;
    return facts;
}

bool readAttributes(HANDLE folder, DWORD& attributes)
{
    FILE_BASIC_INFO info = {};
    if (!GetFileInformationByHandleEx(folder, FileBasicInfo, &info, sizeof info))
        return false;
    attributes = info.FileAttributes;
    return true;
}

// The attributes and the identity in one question, the volume's serial
// number included; false, with error set, when the folder cannot be told.
bool readHeldFolder(FolderHold& hold, DWORD& attributes)
{
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!GetFileInformationByHandle(hold.handle(), &info)) {
        hold.error = GetLastError();
        return false;
    }
    attributes = info.dwFileAttributes;
    hold.identity.volumeSerial = info.dwVolumeSerialNumber;
    hold.identity.fileIndex = (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
    return true;
}

// A folder found in a held one is on the same volume: a volume mounted into a
// folder is a mount point, a link, and is never entered. So it takes its
// parent's serial number, and only its attributes and number are asked: the
// volume's question costs Wine a look at every drive, for every folder.
bool readFoundFolder(FolderHold& hold, const FolderHold& parent, DWORD& attributes)
{
    std::uint64_t index = 0;
    if (!readAttributes(hold.handle(), attributes)) {
        hold.error = GetLastError();
        return false;
    }
    if (!readFolderId(hold.handle(), index, hold.error))
        return false;
    hold.identity = FolderIdentity{parent.identity.volumeSerial, index};
    return true;
}

OwnedHandle openForRemoval(HANDLE parent, const QString& name, const QString& path, DWORD& error)
{
    if (parent != INVALID_HANDLE_VALUE)
        return openInFolder(parent, name, DELETE | FILE_READ_ATTRIBUTES, kRemovalSharing, kFolderOptions, error);
    OwnedHandle opened;
    opened.handle = CreateFileW(asWide(platformPath(path).utf16()), DELETE | FILE_READ_ATTRIBUTES, kRemovalSharing,
                                nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_OPEN_NO_RECALL,
                                nullptr);
    error = opened.isOpen() ? ERROR_SUCCESS : GetLastError();
    return opened;
}

}

FolderHold holdNamedFolder(const QString& folder)
{
    FolderHold hold;
    hold.folder.handle = CreateFileW(asWide(platformPath(folder).utf16()), kHoldAccess, kHoldSharing, nullptr,
                                     OPEN_EXISTING, kNamedFolderFlags, nullptr);
    if (!hold.isHeld()) {
        hold.error = GetLastError();
        hold.isMissing = isGoneError(hold.error);
        return hold;
    }
    DWORD attributes = 0;
    if (!readHeldFolder(hold, attributes))
        hold.folder.close();
    return hold;
}

// Wine opens the target of a link even when asked for the link itself, so
// there the handle shows an ordinary folder and the listing's attributes
// remain the test.
FolderHold holdFoundFolder(const FolderHold& parent, const QString& name)
{
    FolderHold hold;
    hold.folder = openInFolder(parent.handle(), name, kHoldAccess, kHoldSharing, kFolderOptions, hold.error);
    if (!hold.isHeld()) {
        hold.isMissing = isGoneError(hold.error);
        hold.isNotFolder = hold.error == ERROR_DIRECTORY;
        return hold;
    }
    DWORD attributes = 0;
    // A folder whose kind cannot be told is not entered.
    if (!readFoundFolder(hold, parent, attributes)) {
        hold.folder.close();
        return hold;
    }
    hold.facts = factsOf(hold.handle(), name, attributes);
    if (hold.isLink())
        hold.folder.close();
    return hold;
}

// The volume's path is the folder's own, or a part of it in the same form.
QString volumePathOf(const QString& path)
{
    const QString folder = pathForFileCall(folderPrefix(absolutePath(path)));
    std::vector<wchar_t> volume(static_cast<std::size_t>(folder.size()) + 2);
    if (!GetVolumePathNameW(asWide(folder.utf16()), volume.data(), static_cast<DWORD>(volume.size())))
        return QString();
    return folderPrefix(QString::fromWCharArray(volume.data()));
}

bool isVolumeRoot(const QString& path)
{
    const QString volume = volumePathOf(path);
    return !volume.isEmpty()
        && volume.compare(pathForFileCall(folderPrefix(absolutePath(path))), Qt::CaseInsensitive) == 0;
}

// The folder's identity, read while it was held, tells whether the name still
// stands for it.
Removal removeHeldFolder(FolderHold& hold, HANDLE parent, const QString& name, const QString& path, DWORD& error)
{
    const FolderIdentity held = hold.identity;
    hold.folder.close();
    OwnedHandle folder = openForRemoval(parent, name, path, error);
    if (!folder.isOpen())
        return isGoneError(error) ? Removal::Removed : Removal::Failed;
    // The tag read when the folder was held serves here too: the name opened
    // without following a link is the held folder by its number, and a link
    // set on that very folder since would go itself, never what it leads to.
    std::uint64_t found = 0;
    DWORD idError = ERROR_SUCCESS;
    if (!readFolderId(folder.handle, found, idError) || found != held.fileIndex)
        return Removal::NotTheSame;
    error = requestDeletion(folder.handle, deletionSupportFor(held.volumeSerial));
    return error == ERROR_SUCCESS ? Removal::Removed : Removal::Failed;
}

QString placeOnVolume(HANDLE folder, int expectedLength)
{
    constexpr int kSlack = 64;
    std::vector<std::uint32_t> buffer(static_cast<std::size_t>(expectedLength + kSlack) / 2 + 2);
    for (;;) {
        const ULONG bytes = static_cast<ULONG>(buffer.size() * sizeof(std::uint32_t));
        IO_STATUS_BLOCK status = {};
        const NTSTATUS result = NtQueryInformationFile(folder, &status, buffer.data(), bytes,
                                                       FileNameInformation);
        const auto& info = *reinterpret_cast<const FILE_NAME_INFORMATION*>(buffer.data());
        if (result == kStatusBufferOverflow) {
            buffer.resize((info.FileNameLength + sizeof info) / sizeof(std::uint32_t) + 1);
            continue;
        }
        if (!NT_SUCCESS(result))
            return QString();
        return QString::fromWCharArray(info.FileName, static_cast<int>(info.FileNameLength / sizeof(wchar_t)));
    }
}

Pin pinFolder(const PinRequest& request, OwnedHandle& pin, DWORD& error)
{
    if (request.parent != INVALID_HANDLE_VALUE) {
        pin = openInFolder(request.parent, request.name, kHoldAccess, kPinSharing, kFolderOptions, error);
    } else {
        // The folder the sweep starts at was reached through holds that no
        // path retraces: it is opened again through its own hold.
        pin.handle = ReOpenFile(request.hold, kHoldAccess, kPinSharing, FILE_FLAG_BACKUP_SEMANTICS);
        error = pin.isOpen() ? ERROR_SUCCESS : GetLastError();
    }
    if (!pin.isOpen())
        return isGoneError(error) ? Pin::Moved : Pin::Failed;
    std::uint64_t found = 0;
    if (!readFolderId(pin.handle, found, error)) {
        pin.close();
        return Pin::Failed;
    }
    if (found != request.held.fileIndex) {
        pin.close();
        return Pin::Moved;
    }
    if (request.expectedPath.isEmpty())
        return Pin::Taken;
    const QString now = placeOnVolume(pin.handle, static_cast<int>(request.expectedPath.size()));
    if (!standsAt(now, request.expectedPath)) {
        pin.close();
        return Pin::Moved;
    }
    return Pin::Taken;
}
