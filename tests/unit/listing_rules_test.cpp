#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

namespace {

TEST(EntryTime, CreationTimeStandsInForALastWriteWithZeroUpperWord)
{
    EXPECT_EQ(entryTime(0x12345678u, 0, 7, 0x01D00000u), fileTimeToSeconds(7, 0x01D00000u));
    EXPECT_EQ(entryTime(0, 1, 0, 0x01D00000u), fileTimeToSeconds(0, 1));
}

}
