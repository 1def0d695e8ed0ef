#pragma once
// Heap-free strings of fixed capacity that carry paths to the wide-character
// file calls. Every operation cuts silently at the capacity and nothing records
// the cut: callers that need to know compare lengths themselves.

#include <QString>

#include <cstdint>
#include <cstring>
#include <type_traits>

// Only a to z change; units above 0xFF stay as they are, which is what the
// run-time's toupper does in its default locale.
template <typename Unit>
constexpr Unit upperUnit(Unit unit)
{
    return (unit >= Unit('a') && unit <= Unit('z')) ? Unit(unit - ('a' - 'A')) : unit;
}

template <typename Unit, int Capacity>
struct FixedString {
    static constexpr int kCapacity = Capacity;

    std::uint16_t length = 0;
    Unit value[Capacity + 1] = {};

    void clear()
    {
        length = 0;
        std::memset(value, 0, sizeof(value));
    }

    void zeroTail()
    {
        std::memset(value + length, 0, (Capacity + 1 - length) * sizeof(Unit));
    }

    // The narrow byte is sign-extended on purpose: 0xE9 becomes the unit
    // 0xFFE9, not U+00E9. Narrow variants copy the byte unchanged.
    void assignNarrow(const char* text)
    {
        if (text == nullptr) {
            clear();
            return;
        }
        const std::size_t size = std::strlen(text);
        length = static_cast<std::uint16_t>(size < std::size_t(Capacity) ? size : Capacity);
        for (int i = 0; i < length; ++i)
            value[i] = static_cast<Unit>(static_cast<signed char>(text[i]));
        value[length] = 0;
        zeroTail();
    }

    static FixedString fromNarrow(const char* text)
    {
        FixedString result;
        result.assignNarrow(text);
        return result;
    }

    // Growing exposes whatever stood behind the old terminator.
    void setLength(std::int16_t n)
    {
        length = static_cast<std::uint16_t>(n < 0 ? 0 : (n > Capacity ? Capacity : n));
        value[length] = 0;
    }

    // Sets the length to the first zero unit, or to the capacity when there is
    // none.
    void recomputeLength()
    {
        int n = 0;
        while (n < Capacity && value[n] != 0)
            ++n;
        length = static_cast<std::uint16_t>(n);
        value[length] = 0;
    }

    FixedString left(int n) const
    {
        FixedString result;
        result.appendUnits(value, n < length ? n : length);
        return result;
    }

    void appendUnits(const Unit* units, int count)
    {
        if (units == nullptr || count <= 0)
            return;
        const int room = Capacity - length;
        if (count > room)
            count = room;
        std::memmove(value + length, units, count * sizeof(Unit));
        length = static_cast<std::uint16_t>(length + count);
        value[length] = 0;
    }

    void append(const FixedString& text) { appendUnits(text.value, text.length); }

    void insertAt(const int& position, const FixedString& text)
    {
        const int head = clampPosition(position);
        FixedString result = left(head);
        result.append(text);
        result.appendUnits(value + head, length - head);
        *this = result;
    }

    void removeRange(const int& position, const int& count)
    {
        const int head = clampPosition(position);
        const int tail = clampPosition(head + (count > 0 ? count : 0));
        FixedString result = left(head);
        result.appendUnits(value + tail, length - tail);
        *this = result;
    }

    // The next search starts behind the inserted text, so a run of three
    // backslashes with two replaced by one keeps two.
    FixedString& replaceAllNoCase(const FixedString& find, const FixedString& replacement)
    {
        int i = indexOfNoCase(find, 0);
        while (i >= 0) {
            FixedString result = left(i);
            result.append(replacement);
            result.appendUnits(value + i + find.length, length - i - find.length);
            *this = result;
            i = indexOfNoCase(find, i + replacement.length);
        }
        return *this;
    }

    void toUpper()
    {
        for (int i = 0; i < length; ++i)
            value[i] = upperUnit(value[i]);
    }

    FixedString& toBackslashes()
    {
        for (int i = 0; i < length; ++i) {
            if (value[i] == Unit('/'))
                value[i] = Unit('\\');
        }
        return *this;
    }

    bool isEmpty() const { return length == 0; }

    bool firstUnitIs(Unit unit) const { return length > 0 && value[0] == unit; }

    // The prefix is upper-cased in place as a side effect; callers pass
    // throw-away operands.
    bool startsWithNoCase(FixedString& prefix) const
    {
        if (length == 0 || prefix.length == 0 || prefix.length > length)
            return false;
        prefix.toUpper();
        for (int i = 0; i < prefix.length; ++i) {
            if (upperUnit(value[i]) != prefix.value[i])
                return false;
        }
        return true;
    }

    bool endsWithNoCase(const FixedString& suffix) const
    {
        if (length == 0 || suffix.length == 0 || suffix.length > length)
            return false;
        const int start = length - suffix.length;
        for (int i = 0; i < suffix.length; ++i) {
            if (upperUnit(value[start + i]) != upperUnit(suffix.value[i]))
                return false;
        }
        return true;
    }

    bool endsWithBackslash() const { return length > 0 && value[length - 1] == Unit('\\'); }

    bool startsWithParentReference() const
    {
        return length >= 2 && value[0] == Unit('.') && value[1] == Unit('.');
    }

    bool isUncPath() const
    {
        if (length == 0)
            return false;
        FixedString twoBackslashes = fromNarrow("\\\\");
        return startsWithNoCase(twoBackslashes);
    }

    // Compares the upper-cased units in memory order, as memcmp does, not by
    // unit value.
    int compareNoCase(const FixedString& other) const
    {
        const int n = length < other.length ? length : other.length;
        FixedString mine = *this;
        FixedString theirs = other;
        mine.toUpper();
        theirs.toUpper();
        const int difference = std::memcmp(mine.value, theirs.value, n * sizeof(Unit));
        if (difference != 0)
            return difference;
        if (length == other.length)
            return 0;
        return length < other.length ? -1 : 1;
    }

    // A running sum of the units filters the candidate positions; a full
    // comparison decides.
    int indexOfNoCase(const FixedString& text, int from) const
    {
        if (text.length == 0)
            return -1;
        if (from < 0)
            from = 0;
        if (from + text.length > length)
            return -1;
        if (text.length == length)
            return compareNoCase(text) == 0 ? 0 : -1;

        FixedString haystack = *this;
        FixedString needle = text;
        haystack.toUpper();
        needle.toUpper();
        std::int64_t needleSum = 0;
        std::int64_t spanSum = 0;
        for (int k = 0; k < needle.length; ++k) {
            needleSum += unitValue(needle.value[k]);
            spanSum += unitValue(haystack.value[from + k]);
        }
        for (int i = from; i + needle.length <= length; ++i) {
            if (spanSum == needleSum
                && std::memcmp(haystack.value + i, needle.value, needle.length * sizeof(Unit)) == 0)
                return i;
            if (i + needle.length < length)
                spanSum += unitValue(haystack.value[i + needle.length]) - unitValue(haystack.value[i]);
        }
        return -1;
    }

    int indexOfUnitNoCase(Unit unit, int from = 0) const
    {
        if (from < 1 || from > length - 1)
            from = 0;
        const Unit wanted = upperUnit(unit);
        for (int i = from; i < length; ++i) {
            if (upperUnit(value[i]) == wanted)
                return i;
        }
        return -1;
    }

    int firstBackslash() const
    {
        for (int i = 0; i < length; ++i) {
            if (value[i] == Unit('\\'))
                return i;
        }
        return -1;
    }

private:
    int clampPosition(int position) const
    {
        return position < 0 ? 0 : (position > length ? length : position);
    }

    static std::int64_t unitValue(Unit unit)
    {
        return static_cast<std::int64_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
    }
};

using FixedWideString = FixedString<char16_t, 500>;
using FixedWideString250 = FixedString<char16_t, 250>;
using FixedNarrowString100 = FixedString<char, 100>;
using FixedNarrowString250 = FixedString<char, 250>;
using FixedNarrowString500 = FixedString<char, 500>;

// Copies the first units of the text, up to the capacity.
template <typename Fixed>
Fixed fixedFromQString(const QString& text)
{
    Fixed result;
    result.appendUnits(reinterpret_cast<const char16_t*>(text.utf16()), int(text.size() < Fixed::kCapacity ? text.size() : Fixed::kCapacity));
    return result;
}

inline FixedWideString toFixedWide(const QString& text)
{
    return fixedFromQString<FixedWideString>(text);
}

inline FixedWideString250 toFixedWide250(const QString& text)
{
    return fixedFromQString<FixedWideString250>(text);
}

template <int Capacity>
QString toQString(const FixedString<char16_t, Capacity>& text)
{
    return QString::fromUtf16(text.value, text.length);
}

template <int Capacity>
QString toQString(const FixedString<char, Capacity>& text)
{
    return QString::fromLatin1(text.value, text.length);
}

// Narrow fixed strings take the Latin-1 bytes of a Qt text, cut at the capacity.
template <int Capacity>
FixedString<char, Capacity> latin1FromQString(const QString& text)
{
    const QByteArray bytes = text.toLatin1();
    FixedString<char, Capacity> result;
    result.appendUnits(bytes.constData(), int(bytes.size()));
    return result;
}
