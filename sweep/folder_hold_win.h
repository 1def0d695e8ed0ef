#pragma once
// A folder held open while it is swept. The hold lists the folder and opens
// its entries, and nothing more: it shares reading, writing and deletion, so a
// job may go on with its folder as if the tool were not there, remove it or
// rename it included. Entries are opened through the hold by their names, so
// they are the folder's own wherever the folder has gone; while the sweep
// deletes in a folder, a pin keeps the folder where it stood.

#include "sweep/handles_win.h"
#include "sweep/listing_rules.h"

#include <QString>

struct FolderHold {
    OwnedHandle folder;
    // What the handle of a folder found in a held one showed.
    EntryFacts facts;
    // Nothing is there: the open said so.
    bool isMissing = false;
    // Something other than a folder is there, put in the folder's place since
    // the listing.
    bool isNotFolder = false;
    // Why a folder that is there could not be held; ERROR_SUCCESS otherwise.
    DWORD error = ERROR_SUCCESS;
    // Read through the handle once it is held.
    FolderIdentity identity;

    bool isHeld() const { return folder.isOpen(); }
    // No folder is there now, whatever stands in its place.
    bool foundNoFolder() const { return isMissing || isNotFolder; }
    HANDLE handle() const { return folder.handle; }
    // The handle showed a link where the listing had seen a folder.
    bool isLink() const { return entryKind(facts) == EntryKind::Link; }
};

// The folder the caller named, opened by its path as named: a link there is
// followed, and a relative path is taken from the current folder.
FolderHold holdNamedFolder(const QString& folder);

// The folder called name in the held folder parent, opened itself and never a
// link's target. A link put in its place since the listing is caught through
// the handle: isLink() says so and nothing is held. So is a folder gone since,
// with isMissing, or replaced by a file, with isNotFolder.
FolderHold holdFoundFolder(const FolderHold& parent, const QString& name);

// The path of the volume the folder the path names is on, as the system gives
// it for the path in the form a file call takes, prefix included; empty when
// it cannot be read.
QString volumePathOf(const QString& path);

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

// Where the held folder stands now on its volume, as the system names it from
// its handle, from the volume's root on; empty when it cannot say.
// expectedLength sizes the first try.
QString placeOnVolume(HANDLE folder, int expectedLength);

// What pinning a folder came to: taken, or the folder has been moved, removed
// or replaced since it was held, or the pin failed for another reason.
enum class Pin { Taken, Moved, Failed };

// The folder to pin: its name in the held folder parent, or its own hold when
// there is no parent; the identity it was held with; and its place on its
// volume, where it must stand now, or empty when that cannot be known.
struct PinRequest {
    HANDLE parent = INVALID_HANDLE_VALUE;
    QString name;
    HANDLE hold = INVALID_HANDLE_VALUE;
    FolderIdentity held;
    QString expectedPath;
};

// Opens the folder again, without delete sharing, so nobody can rename,
// delete or replace it until the pin goes, and checks that it is the held
// folder and stands where expected. error says why a pin failed.
Pin pinFolder(const PinRequest& request, OwnedHandle& pin, DWORD& error);
