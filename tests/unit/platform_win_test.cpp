// Win32 answers no run here can provoke: an entry deleted elsewhere but still open, "C:".

#include "sweep/dir_listing_win.h"
#include "sweep/file_ops.h"
#include "sweep/handles_win.h"

#include <gtest/gtest.h>

namespace {

// Windows refuses to open such an entry with its own status; Wine opens it as
// any other.
TEST(OpenFailure, AnEntryDeletedElsewhereIsGoneWhereOneDeniedOrSharedIsNot)
{
    constexpr LONG kStatusDeletePending = static_cast<LONG>(0xC0000056);
    constexpr LONG kStatusNameNotFound = static_cast<LONG>(0xC0000034);
    constexpr LONG kStatusAccessDenied = static_cast<LONG>(0xC0000022);
    constexpr LONG kStatusSharingViolation = static_cast<LONG>(0xC0000043);
    const struct { LONG status; bool gone; } cases[] = {
        {kStatusDeletePending, true}, {kStatusNameNotFound, true},
        {kStatusAccessDenied, false}, {kStatusSharingViolation, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isGoneError(openFailure(c.status)), c.gone) << std::hex << c.status;
}

TEST(FileOps, DriveRoots)
{
    // Win32 reads "C:" as the current folder of drive C.
    EXPECT_FALSE(folderExists(QStringLiteral("C:")));
}

}
