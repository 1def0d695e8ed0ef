#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool noFile(const QString&)
{
    return false;
}

TEST(ListingPaths, FolderListedByPathOrThroughItsHandleGivesTheSamePaths)
{
    for (const char* folder : {"K:\\x\\y", "K:/x/y/", "K:\\x\\y\\", "rel"}) {
        const ListingPaths byPath = listingPaths(QString::fromLatin1(folder), noFile);
        EXPECT_EQ(folderPrefix(QString::fromLatin1(folder)), byPath.prefix) << folder;
    }
}

TEST(EntryTime, CreationTimeStandsInForALastWriteWithZeroUpperWord)
{
    EXPECT_EQ(entryTime(0x12345678u, 0, 7, 0x01D00000u), fileTimeToSeconds(7, 0x01D00000u));
    EXPECT_EQ(entryTime(0, 1, 0, 0x01D00000u), fileTimeToSeconds(0, 1));
}

TEST(EntryFilters, EachNonEmptyListOverridesTheOneBefore)
{
    const struct { const char *name, *suffixes, *prefixes, *contains; bool accepted; } cases[] = {
        {"a.log", ".LOG", "", "", true},
        {"a.txt", ".LOG", "", "", false},
        {"KEEP.txt", ".LOG", "keep", "", true},
        {"a.log", ".LOG", "keep", "", false},
        {"a_MID.txt", ".LOG", "keep", "mid", true},
        {"keep.log", ".LOG", "keep", "mid", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(acceptsFile(QString::fromLatin1(c.name), words(c.suffixes), words(c.prefixes), words(c.contains)),
                  c.accepted) << c.name;
}

TEST(EntrySort, NamesSortByCodeUnitAndCarryTheirData)
{
    QStringList names = words("b a C _x a");
    QList<TimeStamp> times{2, 1, 3, 4, 1};
    QList<std::int64_t> sizes{20, 10, 30, 40, 10};
    QList<bool> flags{false, true, false, false, true};
    QList<bool> links{true, false, false, false, false};
    sortEntries({names, times, sizes, flags, links}, false);
    EXPECT_EQ(names, words("C _x a a b"));
    EXPECT_EQ(times, (QList<TimeStamp>{3, 4, 1, 1, 2}));
    EXPECT_EQ(sizes, (QList<std::int64_t>{30, 40, 10, 10, 20}));
    EXPECT_EQ(flags, (QList<bool>{false, false, true, true, false}));
    EXPECT_EQ(links, (QList<bool>{false, false, false, false, true}));
}

}
