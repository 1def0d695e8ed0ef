#include "sweep/deletion_rules.h"

#include "sweep/listing_rules.h"

DeletionRequest firstDeletionRequest(const DeletionSupport& support, bool readOnly)
{
    if (readOnly)
        return support.posixRefused || support.ignoreReadOnlyRefused ? DeletionRequest::ResetReadOnly
                                                                     : DeletionRequest::PosixIgnoringReadOnly;
    return support.posixRefused ? DeletionRequest::Classic : DeletionRequest::Posix;
}

DeletionRequest nextDeletionRequest(DeletionRequest failed, std::uint32_t error, bool readOnly,
                                    DeletionSupport& support)
{
    if (isUnsupportedRequest(error)) {
        if (failed == DeletionRequest::PosixIgnoringReadOnly) {
            support.ignoreReadOnlyRefused = true;
            return DeletionRequest::Posix;
        }
        if (failed == DeletionRequest::Posix) {
            support.posixRefused = true;
            return DeletionRequest::Classic;
        }
    }
    if (readOnly && error == kErrorAccessDenied)
        return DeletionRequest::ResetReadOnly;
    return DeletionRequest::None;
}
