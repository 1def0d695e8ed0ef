#include "sweep/packed_entries.h"

#include <algorithm>
#include <cstring>

namespace {

// Set in an entry's first byte, above the listing's flags.
constexpr std::uint8_t kLatin1Name = 0x80;
// A number goes seven bits a byte, lowest first; the top bit says another
// byte follows.
constexpr int kBitsPerByte = 7;
constexpr std::uint8_t kMoreFollows = 0x80;
constexpr std::uint8_t kNumberBits = 0x7F;
// A number's bytes at most: seven bits each of 64.
constexpr std::size_t kNumberBytes = 10;
constexpr std::size_t kNumbersPerEntry = 4;

void putNumber(std::string& bytes, std::uint64_t value)
{
    for (; value > kNumberBits; value >>= kBitsPerByte)
        bytes.push_back(static_cast<char>((value & kNumberBits) | kMoreFollows));
    bytes.push_back(static_cast<char>(value));
}

std::uint64_t takeNumber(const std::string& bytes, std::size_t& at)
{
    std::uint64_t value = 0;
    for (int shift = 0;; shift += kBitsPerByte) {
        const auto byte = static_cast<std::uint8_t>(bytes[at++]);
        value |= static_cast<std::uint64_t>(byte & kNumberBits) << shift;
        if ((byte & kMoreFollows) == 0)
            return value;
    }
}

// A time before 1970 is negative: its sign goes to the lowest bit, so a
// small negative number stays short too.
std::uint64_t signFolded(std::int64_t value)
{
    return (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63);
}

std::int64_t signUnfolded(std::uint64_t value)
{
    return static_cast<std::int64_t>((value >> 1) ^ (0 - (value & 1)));
}

bool isLatin1(QStringView name)
{
    for (const QChar unit : name) {
        if (unit.unicode() > 0xFF)
            return false;
    }
    return true;
}

// The last block, or a new one where the entry might not fit. The first
// block grows with the folder; a folder that fills it is a large one, and
// each later block is taken whole at once.
std::string& blockFor(PackedEntries& entries, std::size_t mostBytes)
{
    if (entries.blocks.empty() || entries.blocks.back().size() + mostBytes > kPackedBlockBytes) {
        const bool first = entries.blocks.empty();
        entries.blocks.emplace_back();
        if (!first)
            entries.blocks.back().reserve(std::max(mostBytes, kPackedBlockBytes));
    }
    return entries.blocks.back();
}

}

void packEntry(PackedEntries& entries, const EntryValues& values, QStringView name)
{
    const bool latin1 = isLatin1(name);
    const auto length = static_cast<std::size_t>(name.size());
    const std::size_t nameBytes = latin1 ? length : length * sizeof(char16_t);
    std::string& bytes = blockFor(entries, 1 + kNumbersPerEntry * kNumberBytes + nameBytes);
    bytes.push_back(static_cast<char>(values.flags | (latin1 ? kLatin1Name : 0)));
    putNumber(bytes, length);
    if (latin1) {
        for (const QChar unit : name)
            bytes.push_back(static_cast<char>(unit.unicode()));
    } else {
        bytes.append(reinterpret_cast<const char*>(name.utf16()), nameBytes);
    }
    putNumber(bytes, signFolded(values.time));
    putNumber(bytes, static_cast<std::uint64_t>(values.size));
    putNumber(bytes, static_cast<std::uint64_t>(values.allocation));
}

bool unpackEntry(PackedEntries& entries, EntryValues& values, QString& name)
{
    while (entries.block < entries.blocks.size() && entries.offset >= entries.blocks[entries.block].size()) {
        ++entries.block;
        entries.offset = 0;
    }
    if (entries.block >= entries.blocks.size())
        return false;
    const std::string& bytes = entries.blocks[entries.block];
    std::size_t& at = entries.offset;
    const auto head = static_cast<std::uint8_t>(bytes[at++]);
    values.flags = head & ~kLatin1Name;
    const auto length = static_cast<qsizetype>(takeNumber(bytes, at));
    if ((head & kLatin1Name) != 0) {
        name = QString::fromLatin1(bytes.data() + at, length);
        at += static_cast<std::size_t>(length);
    } else {
        name = QString(length, Qt::Uninitialized);
        std::memcpy(name.data(), bytes.data() + at, static_cast<std::size_t>(length) * sizeof(char16_t));
        at += static_cast<std::size_t>(length) * sizeof(char16_t);
    }
    values.time = signUnfolded(takeNumber(bytes, at));
    values.size = static_cast<std::int64_t>(takeNumber(bytes, at));
    values.allocation = static_cast<std::int64_t>(takeNumber(bytes, at));
    return true;
}

void clearEntries(PackedEntries& entries)
{
    entries = PackedEntries();
}
