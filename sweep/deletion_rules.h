#pragma once
// Which deletion request an entry gets, and what a refusal teaches about its
// volume. Systems and file servers differ in what they know: Windows before
// 1809 refuses the POSIX request's extra flags or the request itself, and some
// file servers accept the request but ignore its flags.

#include <cstdint>

enum class DeletionRequest {
    // POSIX semantics, ignoring the read-only attribute: for read-only files.
    PosixIgnoringReadOnly,
    // POSIX semantics alone: the name goes at once, even while others hold the
    // entry open.
    Posix,
    // The classic disposition, which takes effect when the last handle closes.
    Classic,
    // Reset the read-only attribute, then ask again as for any entry.
    ResetReadOnly,
    // Nothing more to try: the last error stands.
    None,
};

// What one volume has refused so far; kept for the rest of the run.
struct DeletionSupport {
    bool ignoreReadOnlyRefused = false;
    bool posixRefused = false;
};

DeletionRequest firstDeletionRequest(const DeletionSupport& support, bool readOnly);

// After request failed with error: the next one to try. A refusal of the
// request as unknown is learnt into support; a read-only entry that is denied
// has its attribute reset, whatever was learnt.
DeletionRequest nextDeletionRequest(DeletionRequest failed, std::uint32_t error, bool readOnly,
                                    DeletionSupport& support);
