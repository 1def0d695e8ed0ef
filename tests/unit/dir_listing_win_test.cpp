#include "sweep/dir_listing.h"
#include "sweep/folder_pin.h"
#include "temp_folder_win.h"

namespace {

using Listing = TempFolderTest;

// The full paths of a listing of the folder, read through a hold on it.
QStringList listed(const QString& folder)
{
    const FolderPin pin = pinNamedFolder(folder, false);
    DirListingHandle handle = nullptr;
    listing::create(handle);
    EXPECT_EQ(listing::open(handle, pin.handle, folder), DWORD(ERROR_SUCCESS));
    QStringList found;
    while (listing::next(handle))
        found << listing::fullPath(handle);
    listing::destroy(handle);
    return found;
}

TEST_F(Listing, FolderGivenWithSlashesYieldsAllButDotsWithBackslashPaths)
{
    writeFile(path(QStringLiteral("a.txt")));
    makeFolder(path(QStringLiteral(".git")));
    EXPECT_EQ(listed(QString(root).replace(QLatin1Char('\\'), QLatin1Char('/'))),
              (QStringList{path(QStringLiteral(".git")), path(QStringLiteral("a.txt"))}));
    EXPECT_EQ(listed(path(QStringLiteral(".git"))), QStringList());
}

// More entries than one fetch holds are all read.
TEST_F(Listing, LargeFolderIsReadWhole)
{
    for (int i = 0; i < 1500; ++i)
        writeFile(path(QStringLiteral("entry_with_a_long_name_to_fill_the_fetch_%1.txt").arg(i)));
    EXPECT_EQ(listed(root).size(), 1500);
}

}
