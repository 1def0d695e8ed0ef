#include "app/startup_check.h"

#include "test_support.h"

#include <gtest/gtest.h>

namespace {

TEST(RootFailureMessage, ShowsProgramLastRootFlagAndLogOnePlaceholderAtATime)
{
    const QString head =
        "Unable to get KX Root path; This executable was not started from a KX directory.\n\n (Tried: '";
    const struct {
        std::initializer_list<std::string> arguments;
        QString rootLog, tail;
    } cases[] = {
        {{"x.exe", "C:\\temp", "-do", "7"}, "\n[L: invalid]", "x.exe', '')\n\n[L: invalid]"},
        {{"K:\\b\\x.exe", "-kxRoot", "A:\\one", "-KXROOTDIR", "B:\\t&amp;wo/"}, "", "K:\\b\\x.exe', 'B:\\t&wo/')\n"},
        {{"x.exe", "-kxRoot", "X:\\100%%"}, "%%", "x.exe', 'X:\\100%%\\')\n%%"},
        {{"C:\\\xE9&amp;.exe"}, "", "C:\\\u00E9&amp;.exe', '')\n"},  // argv[0] as given
        // One placeholder at a time: a "%2" in argv[0] is filled by the second
        // call, every "%3" present by then by the third.
        {{"x%2", "-kxRoot", "R%3"}, "L", "xRL\\', 'RL\\')\nL"},
    };
    for (const auto& c : cases) {
        Argv args(c.arguments);
        EXPECT_EQ(rootFailureMessage(args.argc(), args.argv(), c.rootLog), head + c.tail) << args.texts[0];
    }
}

}
