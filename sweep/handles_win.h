#pragma once
// The one handle layer under the sweep: an owned handle, an entry opened by its
// exact name relative to the held folder it was listed in, and the deletion
// request, for files and folders alike.

#include "sweep/deletion_rules.h"
#include "sweep/win32.h"

#include <QString>

// Closes its handle when it goes; moved, never copied.
struct OwnedHandle {
    HANDLE handle = INVALID_HANDLE_VALUE;

    OwnedHandle() = default;
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    OwnedHandle(OwnedHandle&& other) noexcept;
    OwnedHandle& operator=(OwnedHandle&& other) noexcept;
    ~OwnedHandle();

    bool isOpen() const { return handle != INVALID_HANDLE_VALUE; }
    void close();
};

// Opens name in the held folder, never following a link at the name itself and
// never recalling data that is not on this machine. On failure the handle is
// not open and error says why.
OwnedHandle openInFolder(HANDLE folder, const QString& name, ACCESS_MASK access, ULONG sharing, ULONG options,
                         DWORD& error);

// The same, asked once more without the extra access where the system denies
// it: what that access serves may then fail on its own.
OwnedHandle openInFolderAskingLess(HANDLE folder, const QString& name, ACCESS_MASK access, ACCESS_MASK extra,
                                   ULONG sharing, ULONG options, DWORD& error);

// The error that a failed open of an entry stands for. An entry that another
// program has deleted but still holds open fails with a status of its own,
// which the platform maps to "access denied"; here it stays told apart.
DWORD openFailure(LONG status);

// Nothing is there any more: not found, or deleted by another program that
// still holds it open.
bool isGoneError(DWORD error);

// What the volume with this serial number has refused of the deletion
// requests so far in this run.
DeletionSupport& deletionSupportFor(std::uint32_t volumeSerial);

// Asks for the deletion of an opened entry by the best request its volume
// knows, learning from each refusal. ERROR_SUCCESS or the reason. For a
// read-only entry the requests may end in resetReadOnly being set: its
// attribute must then be reset before it is asked again as any entry.
DWORD requestDeletion(HANDLE entry, DeletionSupport& support, bool readOnly = false, bool* resetReadOnly = nullptr);
