#include "app/startup_check.h"

#include "test_support.h"

#include <gtest/gtest.h>

// Each arg() fills the lowest placeholder left: "%2" in argv[0] takes the flag value, then "%3" rootLog.
TEST(RootFailureMessage, FillsOnePlaceholderAtATimeAndShowsArgv0AsGiven)
{
    Argv args({"C:\\\xE9&amp;%2", "-kxRoot", "R%3"});
    EXPECT_EQ(latin1(rootFailureMessage(args.argc(), args.argv(), QStringLiteral("L"))),
              "Unable to get KX Root path; This executable was not started from a KX directory.\n\n"
              " (Tried: 'C:\\\xE9&amp;RL\\', 'RL\\')\nL");
}
