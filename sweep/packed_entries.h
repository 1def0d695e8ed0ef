#pragma once
// The entries of one listing, packed one after another. A folder of hundreds
// of thousands of entries is listed whole before anything in it is deleted,
// so each entry takes only the bytes its values need: a number one byte per
// seven bits, a name whose characters are all Latin-1 one byte per character.

#include "sweep/file_time.h"

#include <QString>
#include <QStringView>

#include <cstdint>
#include <deque>
#include <string>

// What the sweep reads of one entry besides its name.
struct EntryValues {
    TimeStamp time = 0;
    std::int64_t size = 0;
    std::int64_t allocation = 0;
    // The listing's own flags, in the low seven bits.
    std::uint8_t flags = 0;
};

struct PackedEntries {
    // Blocks of at most kPackedBlockBytes, or one entry's bytes where a name
    // is longer; an entry never spans two blocks.
    std::deque<std::string> blocks;
    // Where the next entry to unpack starts.
    std::size_t block = 0;
    std::size_t offset = 0;
};

constexpr std::size_t kPackedBlockBytes = 64 * 1024;

void packEntry(PackedEntries& entries, const EntryValues& values, QStringView name);
// Unpacks the entry after the last one unpacked; false after the last.
bool unpackEntry(PackedEntries& entries, EntryValues& values, QString& name);
void clearEntries(PackedEntries& entries);
