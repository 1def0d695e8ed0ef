#include "sweep/dir_listing.h"
#include "sweep/folder_pin.h"
#include "temp_folder_win.h"

namespace {

using FolderPinTest = TempFolderTest;

// "job." is reached by its own name, beside a "job" that a plain path would
// name instead.
TEST_F(FolderPinTest, FolderHeldByItsExactNameCannotBeRenamedAndIsRemovedItself)
{
    const QString verbatim = QStringLiteral("\\\\?\\") + path(QStringLiteral("job."));
    const QString moved = path(QStringLiteral("moved"));
    makeFolder(path(QStringLiteral("job")));
    ASSERT_TRUE(CreateDirectoryW(asWide(verbatim.utf16()), nullptr));
    const HANDLE inner = CreateFileW(asWide((verbatim + QStringLiteral("\\x")).utf16()), GENERIC_WRITE, 0, nullptr,
                                     CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(inner, INVALID_HANDLE_VALUE);
    CloseHandle(inner);
    const FolderPin parent = pinNamedFolder(root, false);
    FolderPin pin = pinFoundFolder(parent.handle, QStringLiteral("JOB."), true);
    ASSERT_TRUE(pin.isHeld());
    EXPECT_FALSE(pin.isLink || pin.isMissing);
    EXPECT_FALSE(MoveFileW(asWide(verbatim.utf16()), asWide(moved.utf16())));
    EXPECT_EQ(removePinnedFolder(pin), DWORD(ERROR_DIR_NOT_EMPTY));
    ASSERT_TRUE(DeleteFileW(asWide((verbatim + QStringLiteral("\\x")).utf16())));
    pin = pinFoundFolder(parent.handle, QStringLiteral("job."), true);
    EXPECT_EQ(removePinnedFolder(pin), DWORD(ERROR_SUCCESS));
    EXPECT_EQ(GetFileAttributesW(asWide(verbatim.utf16())), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(exists(QStringLiteral("job")));
    EXPECT_TRUE(pinFoundFolder(parent.handle, QStringLiteral("job."), true).isMissing);
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
