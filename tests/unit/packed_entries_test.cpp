#include "sweep/packed_entries.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>

namespace {

// Entries come back in the order they went in, each value as it was whatever
// its size or sign, and each name whatever characters it holds: Latin-1 ones
// take a byte each, others two, and a lone surrogate stays itself. A name
// longer than a block gets a block of its own, and what follows a new one.
TEST(PackedEntries, EveryValueAndNameComesBackInOrder)
{
    constexpr std::int64_t kMost = INT64_MAX, kLeast = INT64_MIN;
    const struct { std::u16string name; EntryValues values; } cases[] = {
        {u"frame_0000001.exr", {1764000000, 0, 0, 5}},
        {u"caf\u00e9 \u00ff", {-11644473600, 1, 4096, 0x7F}},
        {u"\u0100\u4e2d", {kLeast, kMost, kMost, 0}},
        {u"a\xD800z", {kMost, 1ll << 32, (1ll << 32) + 4096, 1}},
        {std::u16string(40000, u'\u4e2d'), {-1, 127, 128, 2}},
    };
    PackedEntries entries;
    constexpr int kRounds = 3;
    for (int round = 0; round < kRounds; ++round) {
        for (const auto& c : cases)
            packEntry(entries, c.values, QStringView(c.name.data(), static_cast<qsizetype>(c.name.size())));
    }
    EXPECT_EQ(entries.blocks.size(), 6u);
    EntryValues values;
    QString name;
    for (int round = 0; round < kRounds; ++round) {
        for (const auto& c : cases) {
            ASSERT_TRUE(unpackEntry(entries, values, name)) << round;
            ASSERT_EQ(std::tie(name, values.time, values.size, values.allocation, values.flags),
                      std::make_tuple(QString::fromStdU16String(c.name), c.values.time, c.values.size,
                                      c.values.allocation, c.values.flags));
        }
    }
    EXPECT_FALSE(unpackEntry(entries, values, name));
}

}
