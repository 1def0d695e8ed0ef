// Win32 answers no run here can provoke: reparse tags Wine never makes, "C:", unreadable free space.

#include "app/folder_run.h"
#include "sweep/dir_listing_win.h"
#include "sweep/file_ops.h"

#include <gtest/gtest.h>

namespace {

// Wine makes symbolic links only; the other tags stand for what the file
// systems of a render node may hold.
TEST(LinkEntry, NameSurrogatesZeroAndUnknownTagsAreLinksPlaceholdersAreNot)
{
    const DWORD link = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const struct { DWORD attributes, tag; bool isLink; } cases[] = {
        {FILE_ATTRIBUTE_DIRECTORY, static_cast<DWORD>(IO_REPARSE_TAG_SYMLINK), false},
        {link, 0, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_MOUNT_POINT), true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DFS), true},
        {link, 0x00001234, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD_F), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DEDUP), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isLinkEntry(c.attributes, c.tag), c.isLink) << std::hex << c.attributes << " " << c.tag;
}

TEST(FileOps, DriveRootsAndUnreadableDrives)
{
    // Win32 reads "C:" as the current folder of drive C.
    EXPECT_FALSE(folderExists(QStringLiteral("C:")));
    // A drive whose free space cannot be read shows the stand-in.
    EXPECT_EQ(freeDriveSpaceMiB(QStringLiteral("\\\\no_such_server\\share\\x")), 1000u);
}

}
