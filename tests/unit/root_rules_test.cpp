#include "install/root_rules.h"

#include "test_support.h"

#include <gtest/gtest.h>

TEST(RootFlagScan, PrefixIgnoresCaseValueIsDecodedAndNotSkipped)
{
    const struct { std::initializer_list<std::string> arguments; const char* values; } cases[] = {
        {{"x", "C:\\temp", "-kxRoot"}, ""},
        {{"x", "-KXROOTDIR", "X:\\a&amp;b"}, "X:\\a&b\\"},
        {{"x", "-kxRoot", "-kxRoot", "X:/s/"}, "-kxRoot\\|X:/s/"},
    };
    for (const auto& c : cases) {
        Argv args(c.arguments);
        EXPECT_EQ(latin1(kxRootFlagValues(args.argc(), args.argv()).join(QLatin1Char('|'))), c.values);
    }
}

TEST(RelinkLine, ValueFollowsTheFirstEqualsAndOtherLinesChangeNothing)
{
    const struct { const char *line, *root; } cases[] = {
        {"RootDir=Y:\\\xE9=b", "Y:\\\xE9=b\\"},
        {"Root=", ""},
        {"Root Y:\\data", ""},
        {"Base=Y:\\data", ""},
    };
    for (const auto& c : cases) {
        InstallPaths paths;
        paths.entries[kExeRootEntry].assignNarrow("E:\\");
        applyRelinkLine(paths, c.line);
        EXPECT_EQ(latin1(toQString(paths.entries[kRootEntry])), c.root) << c.line;
        EXPECT_EQ(latin1(toQString(paths.entries[kExeRootEntry])), "E:\\") << c.line;
    }
}
