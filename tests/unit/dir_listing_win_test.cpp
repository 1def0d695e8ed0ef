#include "sweep/dir_listing.h"
#include "sweep/folder_pin.h"
#include "temp_folder_win.h"

namespace {

using Listing = TempFolderTest;

// More entries than one fetch holds are all read, with every name but the
// dot entries.
TEST_F(Listing, LargeFolderIsReadWholeButForTheDotEntries)
{
    constexpr int kEntries = 1500;
    for (int i = 0; i < kEntries; ++i)
        writeFile(path(QStringLiteral("entry_with_a_long_name_to_fill_the_fetch_%1.txt").arg(i)));
    makeFolder(path(QStringLiteral(".git")));
    const FolderPin pin = pinNamedFolder(root, false);
    DirListingHandle handle = nullptr;
    listing::create(handle);
    EXPECT_EQ(listing::open(handle, pin.handle, root), DWORD(ERROR_SUCCESS));
    int count = 0;
    bool sawGit = false;
    while (listing::next(handle)) {
        ++count;
        sawGit = sawGit || listing::fullPath(handle) == path(QStringLiteral(".git"));
    }
    listing::destroy(handle);
    EXPECT_EQ(count, kEntries + 1);
    EXPECT_TRUE(sawGit);
}

}
