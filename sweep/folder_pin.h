#pragma once
// A folder held open while it is swept. The handle shares reading and writing
// but not deletion, so while it is held nobody can rename, delete or replace
// the folder by a link, and what was checked about it stays true until it is
// used.

#include "sweep/win32.h"

#include <QString>

struct FolderPin {
    HANDLE handle = INVALID_HANDLE_VALUE;
    // The handle showed a link where the listing had seen a folder.
    bool isLink = false;
    // Nothing is there, or no folder: the open or the handle said so.
    bool isMissing = false;

    FolderPin() = default;
    FolderPin(const FolderPin&) = delete;
    FolderPin& operator=(const FolderPin&) = delete;
    FolderPin(FolderPin&& other) noexcept;
    ~FolderPin();

    bool isHeld() const { return handle != INVALID_HANDLE_VALUE; }
    void release();
};

// The folder the caller named, opened as named: a link there is followed.
FolderPin pinNamedFolder(const QString& folder);

// A folder found in a listing, opened itself and never a link's target. A link
// put in its place since the listing is caught through the handle: isLink is
// set and nothing is held. So is a folder gone since, with isMissing.
FolderPin pinFoundFolder(const QString& folder);
