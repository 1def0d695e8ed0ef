// The command line's rules: the free-space goals of -minfree and -freeto as it reads them, and a usage
// text that names every option of the table.

#include "app/command_line.h"

#include <gtest/gtest.h>

namespace {

TEST(FreeSpaceGoal, SizesBelow16EiBOrAtMost99PercentAboveZeroInAsciiDigits)
{
    const struct { const char16_t* text; bool valid; double bytes; } cases[] = {
        {u"50G", true, 50.0 * (1 << 30)}, {u"1.5m", true, 1.5 * (1 << 20)}, {u"2T", true, 2.0 * (1ull << 40)},
        {u"15%", true, 15}, {u"0G", false, 0}, {u"0.0%", false, 0}, {u"50", false, 0}, {u"G", false, 0},
        {u"5K", false, 0}, {u"-5G", false, 0}, {u".5G", false, 0}, {u"5.G", false, 0}, {u"1.2.3G", false, 0},
        {u"99%", true, 99}, {u"99.01%", false, 99.01}, {u"16777215.99T", true, 16777215.99 * (1ull << 40)},
        {u"16777216T", false, 16777216.0 * (1ull << 40)}, {u"\uff15G", false, 0}, {u"1\u0665%", false, 0},
    };
    for (const auto& c : cases) {
        const QString text = QString::fromUtf16(c.text);
        FreeGoal goal;
        EXPECT_EQ(parseFreeGoal(text, goal), c.valid) << text.toStdString();
        EXPECT_EQ(goal.amount, c.bytes) << text.toStdString();
    }
}

TEST(CommandLine, UsageTextHasALineForEveryOption)
{
    const QString usage = usageText().replace(QLatin1Char(':'), QLatin1Char(' '));
    EXPECT_TRUE(optionNames().contains(QLatin1String("-minfree")));
    for (const QString& name : optionNames())
        EXPECT_TRUE(usage.contains(QLatin1String("\n  ") + name + QLatin1Char(' '))) << name.toStdString();
}

}
