#include "sweep/dir_listing.h"
#include "temp_folder_win.h"

namespace {

class Listing : public TempFolderTest {
protected:
    void SetUp() override { listing::create(handle); }
    void TearDown() override
    {
        listing::destroy(handle);
        EXPECT_EQ(handle, nullptr);
    }

    // Entries in the order yielded: "name\" for a folder, "name:size" for a
    // file. Every full path is checked on the way.
    QStringList entries(const QString& folder, bool includeFolders = true, bool readAllFirst = true,
                        bool sort = false)
    {
        listing::open(handle, folder, includeFolders, readAllFirst, sort, true);
        QStringList found;
        while (listing::next(handle)) {
            const QString name = listing::name(handle);
            EXPECT_EQ(listing::fullPath(handle), handle->prefix + name);
            found << name + (listing::isFolder(handle) ? "\\" : ":" + QString::number(listing::size(handle)));
        }
        return found;
    }

    DirListingHandle handle = nullptr;
};

TEST_F(Listing, FolderGivenWithSlashesListsEverythingButDotsWithBackslashPaths)
{
    writeFile(path("a.txt"), "abc");
    makeFolder(path("sub"));
    makeFolder(path(".git"));
    QStringList found = entries(QString(root).replace('\\', '/'));
    found.sort();
    EXPECT_EQ(found, (QStringList{".git\\", "a.txt:3", "sub\\"}));
    EXPECT_EQ(handle->prefix, root + "\\");
}

TEST_F(Listing, EntryTimeIsTheLastWriteTimeInBothModes)
{
    writeFile(path("t.txt"));
    setTimes(path("t.txt"), FILETIME{0, 0x01D00000u}, FILETIME{0, 0x01D60000u});
    for (const bool readAllFirst : {true, false}) {
        listing::open(handle, root, true, readAllFirst, false, false);
        ASSERT_TRUE(listing::next(handle));
        EXPECT_EQ(listing::time(handle), fileTimeToSeconds(0, 0x01D60000u));
    }
}

TEST_F(Listing, EmptyMissingAndNullListingsYieldNothing)
{
    EXPECT_EQ(entries(root) + entries(root, true, false) + entries(path("missing")), QStringList());
    DirListingHandle none = nullptr;
    EXPECT_FALSE(listing::next(none));
    listing::destroy(none);
}

TEST_F(Listing, FiltersSelectFilesButNeverFolders)
{
    for (const char* name : {"a.log", "a.txt", "keep.txt"})
        writeFile(path(name));
    makeFolder(path("sub"));
    listing::addSuffixFilter(handle, "");
    EXPECT_EQ(entries(root, false, false).size(), 3);
    listing::addSuffixFilter(handle, ".LOG");
    EXPECT_EQ(entries(root, true, false, true), (QStringList{"sub\\", "a.log:1"}));
    listing::addPrefixFilter(handle, "keep");
    EXPECT_EQ(entries(root, false, false), QStringList{"keep.txt:1"});
}

TEST_F(Listing, ReadAllFirstHoldsTheEntriesOnceOpened)
{
    for (const char* name : {"1", "2", "3"})
        writeFile(path(name));
    listing::open(handle, root, true, true, false, false);
    for (const char* name : {"1", "2", "3"})
        EXPECT_EQ(deleteFile(path(name)), QString());
    int count = 0;
    while (listing::next(handle))
        ++count;
    EXPECT_EQ(count, 3);
}

TEST_F(Listing, FolderPastTheLongPathThresholdIsListed)
{
    const QString file = longFilePath(400);
    writeFile(file);
    EXPECT_EQ(entries(folderOfPath(file)), QStringList{file.mid(file.lastIndexOf('\\') + 1) + ":1"});
}

}
