#pragma once
// Entries found in a listing are acted on through the folder that holds them:
// each is opened relative to its held parent's handle by the exact name the
// listing gave, and is deleted or removed through its own handle.
//
// A path built from the name would pass through the Win32 path rules, which
// drop a trailing dot or blank, read a name of dots as the folder itself and a
// device name as the device: another entry than the one tested could go, or
// the tested one could never go. A built path is also resolved again from the
// drive down, through folders that may have been renamed or replaced since
// they were checked, and its length is limited. A name opened in a held folder
// is that entry and no other, at any depth.

#include "sweep/file_time.h"
#include "sweep/handles_win.h"

#include <QString>

// A file found old in a listing, opened for its deletion. The time and the
// attributes are read through the same handle, so they are the file's as it
// is now, not as it was listed.
struct FileToDelete {
    OwnedHandle file;
    DWORD error = ERROR_SUCCESS;
    TimeStamp time = 0;
    TimeStamp changed = 0;
    DWORD attributes = 0;
};

// False when the file could not be opened or read; file.error says why. Only a
// file that the listing showed read-only is asked for the access that changes
// its attributes, which it may need to go.
bool openFileToDelete(HANDLE folder, const QString& name, bool listedReadOnly, FileToDelete& file);

// Deletes the opened file by the requests its volume knows, learning from
// each refusal, and closes it. ERROR_SUCCESS or the reason it stays.
DWORD deleteOpenedFile(FileToDelete& file, DeletionSupport& support);
