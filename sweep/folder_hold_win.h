#pragma once
// A folder held open while it is swept. The hold lists the folder and opens
// its entries, and nothing more: it shares reading and writing but not
// deletion, so while it is held nobody can rename, delete or replace the
// folder by a link, and what was checked about it stays true until it is
// used. A program may still make it its current folder, create files in it or
// rename files into it, as those ask for no deletion.

#include "sweep/handles_win.h"
#include "sweep/listing_rules.h"

#include <QString>

struct FolderHold {
    OwnedHandle folder;
    // The handle showed a link where the listing had seen a folder.
    bool isLink = false;
    // Nothing is there, or no folder: the open or the handle said so.
    bool isMissing = false;
    // Why a folder that is there could not be held; ERROR_SUCCESS otherwise.
    DWORD error = ERROR_SUCCESS;
    // Read through the handle once it is held.
    FolderIdentity identity;

    bool isHeld() const { return folder.isOpen(); }
    HANDLE handle() const { return folder.handle; }
};

// The folder the caller named, opened by its path as named: a link there is
// followed, and a relative path is taken from the current folder.
FolderHold holdNamedFolder(const QString& folder);

// The folder called name in the held folder parent, opened itself and never a
// link's target. A link put in its place since the listing is caught through
// the handle: isLink is set and nothing is held. So is a folder gone since,
// with isMissing.
FolderHold holdFoundFolder(HANDLE parent, const QString& name);

// Whether the folder the path names is the root of a volume: a drive's root, a
// share's, or a volume mounted into a folder.
bool isVolumeRoot(const QString& path);

// What removing an emptied folder came to.
enum class Removal { Removed, Failed, NotTheSame };

// Removes the emptied folder that hold holds, called name in the held folder
// parent, or found by its path when there is no parent. The hold is released,
// and the name opened again with delete access, never following a link; the
// folder is removed only when that is the very folder that was held. error
// says why it failed.
Removal removeHeldFolder(FolderHold& hold, HANDLE parent, const QString& name, const QString& path, DWORD& error);
