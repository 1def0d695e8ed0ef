#include "text/fixed_string.h"

#include <gtest/gtest.h>

#include <string>

namespace {

FixedWideString wide(const char* text)
{
    FixedWideString result;
    result.assignNarrow(text);
    return result;
}

std::u16string units(const FixedWideString& text)
{
    return std::u16string(text.value, text.length);
}

TEST(FixedStringClamping, OverlongNarrowTextIsCutAtCapacity)
{
    const std::string text(600, 'a');
    const FixedWideString cut = wide(text.c_str());
    EXPECT_EQ(cut.length, 500);
    EXPECT_EQ(cut.value[500], 0);

    FixedNarrowString100 narrow;
    narrow.assignNarrow(text.c_str());
    EXPECT_EQ(narrow.length, 100);
    EXPECT_EQ(narrow.value[100], 0);
}

TEST(FixedStringClamping, SetLengthStaysWithinZeroAndCapacity)
{
    FixedWideString text = wide("abc");
    text.setLength(-1);
    EXPECT_EQ(text.length, 0);
    EXPECT_EQ(text.value[0], 0);
    text.setLength(700);
    EXPECT_EQ(text.length, 500);
    EXPECT_EQ(text.value[500], 0);
}

TEST(FixedStringClamping, SetLengthExposesWhatStoodBehindTheTerminator)
{
    FixedWideString text = wide("abcdef");
    text.setLength(2);
    text.setLength(4);
    EXPECT_EQ(units(text), std::u16string(u"ab\0d", 4));
}

TEST(FixedStringClamping, AppendStopsAtCapacity)
{
    FixedWideString text = wide(std::string(495, 'a').c_str());
    const char16_t ten[] = u"0123456789";
    text.appendUnits(ten, 10);
    EXPECT_EQ(text.length, 500);
    EXPECT_EQ(units(text).substr(495), u"01234");

    text.appendUnits(nullptr, 3);
    text.appendUnits(ten, 0);
    EXPECT_EQ(text.length, 500);
}

TEST(FixedStringClamping, InsertAtCutsTheTailAtCapacity)
{
    FixedWideString text = wide(std::string(499, 'a').c_str());
    text.insertAt(1, wide("XYZ"));
    EXPECT_EQ(text.length, 500);
    EXPECT_EQ(units(text).substr(0, 5), u"aXYZa");
}

TEST(FixedStringEditing, InsertAndRemoveRebuildAroundThePosition)
{
    FixedWideString text = wide("abcdef");
    text.insertAt(2, wide("XY"));
    EXPECT_EQ(units(text), u"abXYcdef");
    text.removeRange(1, 3);
    EXPECT_EQ(units(text), u"acdef");
    text.insertAt(99, wide("!"));
    EXPECT_EQ(units(text), u"acdef!");
}

TEST(FixedStringWidening, HighBytesAreSignExtended)
{
    const FixedWideString text = wide("\xE9");
    ASSERT_EQ(text.length, 1);
    EXPECT_EQ(text.value[0], char16_t(0xFFE9));

    FixedNarrowString250 narrow;
    narrow.assignNarrow("\xE9");
    EXPECT_EQ(static_cast<unsigned char>(narrow.value[0]), 0xE9);
}

TEST(FixedStringWidening, NullClearsEveryUnit)
{
    FixedWideString text = wide("abc");
    text.assignNarrow(nullptr);
    EXPECT_EQ(text.length, 0);
    EXPECT_EQ(text.value[1], 0);
}

TEST(FixedStringCase, StartsWithUpperCasesItsPrefixAsSideEffect)
{
    const FixedWideString text = wide("C:\\Suite");
    FixedWideString prefix = wide("c:\\su");
    EXPECT_TRUE(text.startsWithNoCase(prefix));
    EXPECT_EQ(units(prefix), u"C:\\SU");

    FixedWideString other = wide("d:");
    EXPECT_FALSE(text.startsWithNoCase(other));
    EXPECT_EQ(units(other), u"D:");
}

TEST(FixedStringCase, EmptyOrLongerOperandsNeverMatch)
{
    const FixedWideString text = wide("abc");
    FixedWideString empty;
    FixedWideString longer = wide("abcd");
    EXPECT_FALSE(text.startsWithNoCase(empty));
    EXPECT_FALSE(text.startsWithNoCase(longer));
    EXPECT_FALSE(text.endsWithNoCase(empty));
    EXPECT_FALSE(text.endsWithNoCase(longer));
    EXPECT_TRUE(text.endsWithNoCase(wide("BC")));
    EXPECT_FALSE(FixedWideString().isUncPath());
    EXPECT_TRUE(wide("\\\\srv\\share").isUncPath());
}

TEST(FixedStringCase, OnlyAsciiLettersChangeCase)
{
    FixedWideString text = wide("a\xE9z");
    text.toUpper();
    EXPECT_EQ(units(text), std::u16string(u"A") + char16_t(0xFFE9) + u"Z");
}

TEST(FixedStringComparison, CompareAndEqualIgnoreCase)
{
    EXPECT_LT(wide("ab").compareNoCase(wide("abc")), 0);
    EXPECT_GT(wide("abc").compareNoCase(wide("ab")), 0);
    EXPECT_EQ(wide("ABC").compareNoCase(wide("abc")), 0);
    EXPECT_LT(wide("abc").compareNoCase(wide("abd")), 0);
    EXPECT_TRUE(wide("Suite").equalsNoCase(wide("sUITE")));
    EXPECT_FALSE(wide("Suite").equalsNoCase(wide("Suites")));
    EXPECT_TRUE(FixedWideString().equalsNoCase(FixedWideString()));
}

TEST(FixedStringComparison, CompareFollowsMemoryOrderNotUnitValue)
{
    // 0x0100 is the larger unit, but its low byte 0x00 comes first in memory.
    FixedWideString high;
    const char16_t u100 = 0x0100;
    high.appendUnits(&u100, 1);
    EXPECT_LT(high.compareNoCase(wide("A")), 0);
}

struct IndexCase {
    const char* text;
    const char* find;
    int from;
    int expected;
};

TEST(FixedStringSearch, IndexOfNoCase)
{
    const IndexCase cases[] = {
        {"ABC", "abc", 0, 0},
        {"ABC", "", 0, -1},
        {"ABC", "bc", 2, -1},
        {"ABC", "bc", 1, 1},
        {"ABC", "abd", 0, -1},
        {"x\\bin\\win64", "\\WIN", 0, 5},
        {"abcabc", "CA", 0, 2},
        {"abcabc", "abc", 1, 3},
        // Equal sums, different text: the comparison, not the sum, decides.
        {"adbc", "bc", 0, 2},
        {"ad", "bc", 0, -1},
    };
    for (const IndexCase& c : cases)
        EXPECT_EQ(wide(c.text).indexOfNoCase(wide(c.find), c.from), c.expected) << c.text << " / " << c.find;
}

TEST(FixedStringSearch, IndexOfUnitTakesAnOutOfRangeStartAsZero)
{
    const FixedWideString text = wide("a\\b\\c");
    EXPECT_EQ(text.indexOfUnitNoCase(u'\\', 2), 3);
    EXPECT_EQ(text.indexOfUnitNoCase(u'\\', 0), 1);
    EXPECT_EQ(text.indexOfUnitNoCase(u'\\', 9), 1);
    EXPECT_EQ(text.indexOfUnitNoCase(u'\\', -4), 1);
    EXPECT_EQ(text.indexOfUnitNoCase(u'B', 0), 2);
    EXPECT_EQ(text.indexOfUnitNoCase(u'z', 0), -1);
}

TEST(FixedStringSearch, ReplaceAllResumesBehindTheReplacement)
{
    FixedWideString three = wide("\\\\\\");
    three.replaceAllNoCase(wide("\\\\"), wide("\\"));
    EXPECT_EQ(units(three), u"\\\\");

    FixedWideString path = wide("X:\\Suite_DEBUG\\a_debug\\");
    path.replaceAllNoCase(wide("_debug"), wide("_release"));
    EXPECT_EQ(units(path), u"X:\\Suite_release\\a_release\\");
}

TEST(FixedStringNarrow, RecomputeLengthFindsTheFirstZero)
{
    FixedNarrowString250 text;
    text.assignNarrow("abc");
    text.value[1] = 0;
    text.recomputeLength();
    EXPECT_EQ(text.length, 1);
    EXPECT_EQ(text.firstBackslash(), -1);

    std::memset(text.value, 'x', sizeof(text.value));
    text.recomputeLength();
    EXPECT_EQ(text.length, 250);
    EXPECT_EQ(text.value[250], 0);
}

TEST(FixedStringConversion, QStringRoundTripIsCutAtCapacity)
{
    const QString path = QString(300, QLatin1Char('p'));
    EXPECT_EQ(toFixedWide(path).length, 300);
    EXPECT_EQ(toFixedWide250(path).length, 250);
    EXPECT_EQ(toQString(toFixedWide(QStringLiteral("C:\\\u00e9"))), QStringLiteral("C:\\\u00e9"));
    EXPECT_EQ(latin1FromQString<100>(QString::fromLatin1("d\xe9")).value[1], '\xe9');
}

}
