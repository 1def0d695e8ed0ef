#include "text/fixed_string.h"

#include <gtest/gtest.h>

#include <string>

namespace {

FixedWideString wide(const char* text)
{
    return FixedWideString::fromNarrow(text);
}

std::u16string units(const FixedWideString& text)
{
    return std::u16string(text.value, text.length);
}

TEST(FixedString, CutsSilentlyAtCapacityAndSignExtendsHighBytes)
{
    EXPECT_EQ(wide(std::string(600, 'a').c_str()).length, 500);
    EXPECT_EQ(FixedNarrowString100::fromNarrow(std::string(600, 'a').c_str()).length, 100);
    FixedWideString text = wide(std::string(495, 'a').c_str());
    text.appendUnits(u"0123456789", 10);
    EXPECT_EQ(units(text).substr(495), u"01234");
    text.setLength(-1);
    EXPECT_EQ(text.length, 0);
    text.setLength(700);
    EXPECT_EQ(text.length, 500);
    EXPECT_EQ(text.value[500], 0);
    EXPECT_EQ(wide("\xE9").value[0], char16_t(0xFFE9));
}

TEST(FixedString, NoCaseOperations)
{
    const FixedWideString text = wide("C:\\Suite");
    FixedWideString prefix = wide("c:\\su");
    EXPECT_TRUE(text.startsWithNoCase(prefix));
    EXPECT_EQ(units(prefix), u"C:\\SU"); // the prefix is upper-cased in place
    FixedWideString empty;
    EXPECT_FALSE(text.startsWithNoCase(empty) || text.endsWithNoCase(FixedWideString()));
    EXPECT_TRUE(text.endsWithNoCase(wide("ITE")));
    // The unit 0x0100 is larger than 'A', but its first byte in memory is 0x00.
    FixedWideString high;
    high.appendUnits(u"\u0100", 1);
    EXPECT_LT(high.compareNoCase(wide("A")), 0);
    EXPECT_LT(wide("ab").compareNoCase(wide("abc")), 0);
    FixedWideString three = wide("\\\\\\");
    three.replaceAllNoCase(wide("\\\\"), wide("\\"));
    EXPECT_EQ(units(three), u"\\\\"); // resumed behind the replacement
}

TEST(FixedString, IndexOfNoCase)
{
    const struct { const char *text, *find; int from, expected; } cases[] = {
        {"ABC", "abc", 0, 0}, {"ABC", "", 0, -1}, {"ABC", "bc", 2, -1}, {"abcabc", "abc", 1, 3},
        // Equal sums over different text: the comparison, not the sum, decides.
        {"adbc", "bc", 0, 2}, {"ad", "bc", 0, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wide(c.text).indexOfNoCase(wide(c.find), c.from), c.expected) << c.text << " / " << c.find;
}

}
