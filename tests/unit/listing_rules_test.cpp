#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

namespace {

TEST(ListingPaths, FullPathsUseBackslashesAndOneSeparator)
{
    const struct { const char *folder, *prefix; } cases[] = {
        {"K:\\x\\y", "K:\\x\\y\\"}, {"K:/x/y/", "K:\\x\\y\\"}, {"K:\\x\\y\\", "K:\\x\\y\\"}, {"rel", "rel\\"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(folderPrefix(QString::fromLatin1(c.folder)), QString::fromLatin1(c.prefix)) << c.folder;
}

TEST(EntryTime, CreationTimeStandsInForALastWriteWithZeroUpperWord)
{
    EXPECT_EQ(entryTime(0x12345678u, 0, 7, 0x01D00000u), fileTimeToSeconds(7, 0x01D00000u));
    EXPECT_EQ(entryTime(0, 1, 0, 0x01D00000u), fileTimeToSeconds(0, 1));
}

TEST(ListedNames, OnlyTheDotEntriesAreLeftOut)
{
    EXPECT_TRUE(isSelfOrParent(QStringLiteral(".")) && isSelfOrParent(QStringLiteral("..")));
    EXPECT_FALSE(isSelfOrParent(QStringLiteral("...")) || isSelfOrParent(QStringLiteral(".git")));
}

}
