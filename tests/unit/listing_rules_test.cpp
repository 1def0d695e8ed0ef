#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

namespace {

TEST(ListingPaths, PatternFileAndFolderAreSearchedDifferently)
{
    const struct {
        const char* folder;
        bool namesFile;
        const char* prefix;
        const char* pattern;
    } cases[] = {
        {"C:/data/jobs", false, "C:\\data\\jobs\\", "C:\\data\\jobs\\*"},
        {"C:\\data\\jobs\\", false, "C:\\data\\jobs\\", "C:\\data\\jobs\\*"},
        {"C:\\data\\*", true, "C:\\data\\", "C:\\data\\*"},
        {"C:\\data\\m*", true, "C:\\data\\", "C:\\data\\m*"},
        {"C:\\data\\log.txt", true, "C:\\data\\", "C:\\data\\log.txt"},
    };
    for (const auto& c : cases) {
        const auto isFile = c.namesFile ? +[](const QString&) { return true; } : +[](const QString&) { return false; };
        const ListingPaths paths = listingPaths(QString::fromLatin1(c.folder), isFile);
        EXPECT_EQ(paths.prefix, QString::fromLatin1(c.prefix)) << c.folder;
        EXPECT_EQ(paths.searchPattern, QString::fromLatin1(c.pattern)) << c.folder;
    }
}

TEST(EntryTime, CreationTimeStandsInForALastWriteWithZeroUpperWord)
{
    EXPECT_EQ(entryTime(0x12345678u, 0, 7, 0x01D00000u), fileTimeToSeconds(7, 0x01D00000u));
    EXPECT_EQ(entryTime(0, 1, 0, 0x01D00000u), fileTimeToSeconds(0, 1));
    EXPECT_EQ(entryTime(5, 0x01D60000u, 0, 0x01D00000u), fileTimeToSeconds(5, 0x01D60000u));
}

TEST(EntryFilters, EachNonEmptyListOverridesTheOneBefore)
{
    const QStringList none;
    const QStringList suffixes{".LOG"};
    const QStringList prefixes{"keep"};
    const QStringList contains{"mid"};
    EXPECT_TRUE(acceptsFile("a.txt", none, none, none));
    EXPECT_TRUE(acceptsFile("a.log", suffixes, none, none));
    EXPECT_FALSE(acceptsFile("a.txt", suffixes, none, none));
    EXPECT_TRUE(acceptsFile("KEEP.txt", suffixes, prefixes, none));
    EXPECT_FALSE(acceptsFile("a.log", suffixes, prefixes, none));
    EXPECT_TRUE(acceptsFile("a_MID.txt", suffixes, prefixes, contains));
    EXPECT_FALSE(acceptsFile("keep.log", suffixes, prefixes, contains));
    EXPECT_TRUE(acceptsFolder(".git", true));
    EXPECT_FALSE(acceptsFolder(".", true) || acceptsFolder("..", true) || acceptsFolder("sub", false));
}

TEST(EntrySort, NamesSortByCodeUnitAndCarryTheirData)
{
    QStringList names{"b", "a", "C", "_x", "a"};
    QList<TimeStamp> times{2, 1, 3, 4, 1};
    QList<std::int64_t> sizes{20, 10, 30, 40, 10};
    QList<bool> flags{false, true, false, false, true};
    sortEntries(names, times, sizes, flags, false);
    EXPECT_EQ(names, (QStringList{"C", "_x", "a", "a", "b"}));
    EXPECT_EQ(times, (QList<TimeStamp>{3, 4, 1, 1, 2}));
    EXPECT_EQ(sizes, (QList<std::int64_t>{30, 40, 10, 10, 20}));
    EXPECT_EQ(flags, (QList<bool>{false, false, true, true, false}));
    sortEntries(names, times, sizes, flags, true);
    EXPECT_EQ(names, (QStringList{"b", "a", "a", "_x", "C"}));
}

}
