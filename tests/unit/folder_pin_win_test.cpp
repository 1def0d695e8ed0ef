#include "sweep/dir_listing.h"
#include "sweep/folder_pin.h"
#include "temp_folder_win.h"

namespace {

using FolderPinTest = TempFolderTest;

TEST_F(FolderPinTest, PinnedFolderCannotBeRenamedUntilReleased)
{
    const QString folder = path(QStringLiteral("job"));
    const QString moved = path(QStringLiteral("moved"));
    makeFolder(folder);
    FolderPin pin = pinFoundFolder(folder);
    ASSERT_TRUE(pin.isHeld());
    EXPECT_FALSE(pin.isLink);
    EXPECT_FALSE(MoveFileW(asWide(folder.utf16()), asWide(moved.utf16())));
    pin.release();
    EXPECT_TRUE(MoveFileW(asWide(folder.utf16()), asWide(moved.utf16())));
}

TEST(LinkEntry, NameSurrogatesZeroAndUnknownTagsAreLinksPlaceholdersAreNot)
{
    const DWORD link = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const struct { DWORD attributes, tag; bool isLink; } cases[] = {
        {FILE_ATTRIBUTE_DIRECTORY, 0, false},
        {FILE_ATTRIBUTE_DIRECTORY, static_cast<DWORD>(IO_REPARSE_TAG_SYMLINK), false},
        {link, 0, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_MOUNT_POINT), true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_SYMLINK), true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DFS), true},
        {link, 0x00001234, true},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_CLOUD_F), false},
        {link, static_cast<DWORD>(IO_REPARSE_TAG_DEDUP), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isLinkEntry(c.attributes, c.tag), c.isLink) << std::hex << c.attributes << " " << c.tag;
}

}
