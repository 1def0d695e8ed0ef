#include "sweep/dir_listing.h"
#include "temp_folder_win.h"

namespace {

using Listing = TempFolderTest;

// The full paths of a listing that reads the folder first, as the sweep's does.
QStringList listed(const QString& folder)
{
    DirListingHandle handle = nullptr;
    listing::create(handle);
    listing::open(handle, folder, true, true, false, false);
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
}

TEST_F(Listing, EmptyOrMissingFolderYieldsNothing)
{
    EXPECT_EQ(listed(root) + listed(path(QStringLiteral("missing"))), QStringList());
}

}
