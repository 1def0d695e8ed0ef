#pragma once
// A folder held open while it is swept. The handle shares reading and writing
// but not deletion, so while it is held nobody can rename, delete or replace
// the folder by a link, and what was checked about it stays true until it is
// used. Its entries are listed through the handle and opened relative to it.

#include "sweep/win32.h"

#include <QString>

struct FolderPin {
    HANDLE handle = INVALID_HANDLE_VALUE;
    // The handle showed a link where the listing had seen a folder.
    bool isLink = false;
    // Nothing is there, or no folder: the open or the handle said so.
    bool isMissing = false;
    // Why a folder that is there could not be held; ERROR_SUCCESS otherwise.
    DWORD error = ERROR_SUCCESS;

    FolderPin() = default;
    FolderPin(const FolderPin&) = delete;
    FolderPin& operator=(const FolderPin&) = delete;
    FolderPin(FolderPin&& other) noexcept;
    FolderPin& operator=(FolderPin&& other) noexcept;
    ~FolderPin();

    bool isHeld() const { return handle != INVALID_HANDLE_VALUE; }
    void release();
};

// The folder the caller named, opened by its path as named: a link there is
// followed, and a relative path is taken from the current folder.
// With forRemoval the handle may also delete the folder.
FolderPin pinNamedFolder(const QString& folder, bool forRemoval);

// The folder called name in the held folder parent, opened itself and never a
// link's target. A link put in its place since the listing is caught through
// the handle: isLink is set and nothing is held. So is a folder gone since,
// with isMissing. With forRemoval the handle may also delete the folder.
FolderPin pinFoundFolder(HANDLE parent, const QString& name, bool forRemoval);

// Removes the held folder through its own handle, so the folder removed is the
// one that was swept, and releases it. ERROR_SUCCESS or the reason it stays.
DWORD removePinnedFolder(FolderPin& pin);
