#pragma once
// The rules of the directory listing that need no platform call: which
// entries it yields, how it dates them and how it builds their paths.

#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

// The last-write time, or the creation time when the last-write time's upper
// word is zero.
TimeStamp entryTime(std::uint32_t writeLow, std::uint32_t writeHigh, std::uint32_t creationLow,
                    std::uint32_t creationHigh);

// Attribute bits and reparse tags as the platform defines them.
constexpr std::uint32_t kAttributeReadOnly = 0x00000001;
constexpr std::uint32_t kAttributeFolder = 0x00000010;
constexpr std::uint32_t kAttributeReparsePoint = 0x00000400;
constexpr std::uint32_t kAttributeOffline = 0x00001000;
constexpr std::uint32_t kAttributeRecallOnOpen = 0x00040000;
constexpr std::uint32_t kAttributeRecallOnDataAccess = 0x00400000;
constexpr std::uint32_t kReparseTagCloud = 0x9000001A;
// The cloud-files tags differ from kReparseTagCloud only in these bits.
constexpr std::uint32_t kReparseTagCloudMask = 0x0000F000;
// A tag with this bit set names another place: junctions, mount points,
// symbolic links.
constexpr std::uint32_t kReparseTagNameSurrogate = 0x20000000;
constexpr std::uint32_t kReparseTagHsm = 0xC0000004;
constexpr std::uint32_t kReparseTagHsm2 = 0x80000006;
constexpr std::uint32_t kReparseTagSis = 0x80000007;
constexpr std::uint32_t kReparseTagWim = 0x80000008;
constexpr std::uint32_t kReparseTagDfsr = 0x80000012;
constexpr std::uint32_t kReparseTagDedup = 0x80000013;
constexpr std::uint32_t kReparseTagFilePlaceholder = 0x80000015;
constexpr std::uint32_t kReparseTagWof = 0x80000017;
constexpr std::uint32_t kReparseTagProjFs = 0x9000001C;
constexpr std::uint32_t kReparseTagStorageSync = 0x8000001E;
constexpr std::uint32_t kReparseTagOneDrive = 0x80000021;

// System error codes that the listing's rules tell apart.
constexpr std::uint32_t kErrorFileNotFound = 2;
constexpr std::uint32_t kErrorInvalidFunction = 1;
constexpr std::uint32_t kErrorAccessDenied = 5;
constexpr std::uint32_t kErrorSharingViolation = 32;
constexpr std::uint32_t kErrorNoMoreFiles = 18;
constexpr std::uint32_t kErrorNotSupported = 50;
constexpr std::uint32_t kErrorInvalidParameter = 87;

bool isCloudFilesTag(std::uint32_t reparseTag);

// A folder's identity: its volume's serial number and its number there. Two
// handles with the same identity stand for the same folder, whatever names led
// to them.
struct FolderIdentity {
    std::uint32_t volumeSerial = 0;
    std::uint64_t fileIndex = 0;

    bool operator<(const FolderIdentity& other) const
    {
        return volumeSerial != other.volumeSerial ? volumeSerial < other.volumeSerial : fileIndex < other.fileIndex;
    }
};

// A refusal that says the file system does not know the question at all.
bool isUnsupportedRequest(std::uint32_t error);

// Whether a failed fetch of a folder's entries ends its listing without an
// error. FAT and exFAT have no "." and ".." entries, so their first fetch of an
// empty folder finds nothing at all and says "file not found".
bool endsListing(std::uint32_t error, bool firstFetch);

// Whether deleting the entry frees the space it takes: a deduplicated or
// compressed file's data is shared or packed elsewhere, so freeing space never
// counts on it.
bool freesItsSpace(std::uint32_t attributes, std::uint32_t reparseTag);

// What an entry is, for all that walks a tree:
// - VolumeSystem: one of the entries that the system keeps at the root of a
//   volume: the volume's own data (shadow copies, deduplication's chunk
//   store, quotas, replication), the recycle bin, and the paging, swap,
//   hibernation and crash-dump files. None is ever entered, deleted, removed
//   or matched by a "*".
// - Offline: its data is not on this machine: offline, recalled from
//   elsewhere when opened or read, or a cloud-files placeholder, whose
//   deletion would delete the cloud's copy too. It is kept and never entered.
// - Link: a reparse point whose tag names another place (junctions, mount
//   points, symbolic links), or whose tag is zero, unknown, or could not be
//   had. Wine shows a Linux symbolic link to a folder as a reparse point with
//   tag zero. Data placeholders, such as cloud files, are no links.
// - Loop: a folder that leads back up the path, such as a file server's link
//   shown as a plain folder or a folder mounted into itself.
// Where several hold, the first of them in this order is the entry's kind.
enum class EntryKind : std::uint8_t { Plain, VolumeSystem, Offline, Link, Loop };

// What is known of an entry, from its listing or from a handle held on it.
struct EntryFacts {
    QString name;
    std::uint32_t attributes = 0;
    std::uint32_t reparseTag = 0;
    // A handle is asked for the tag only at a reparse point: FAT and exFAT
    // have none and refuse the question. Where the tag could not be had, the
    // entry is taken for a link, since a folder whose kind cannot be told is
    // never entered.
    bool tagKnown = true;
    bool atVolumeRoot = false;
    // A folder held on the current path has the same identity.
    bool onPath = false;
};

EntryKind entryKind(const EntryFacts& facts);

// "." and ".." stand for the folder and its parent, not for entries of it.
// Other names beginning with a dot, such as ".git", are entries.
bool isSelfOrParent(const QString& name);

// Whether a folder stands where it was expected: both are places on one
// volume, "\\" and the names from its root. Names compare exactly, but for
// trailing dots and blanks, which Wine drops when it names a folder.
bool standsAt(const QString& current, const QString& expected);
