#include "app/command_line.h"
#include <gtest/gtest.h>

TEST(CommandLine, UsageTextHasALineForEveryOption)
{
    const QString usage = usageText().replace(QLatin1Char(':'), QLatin1Char(' '));
    EXPECT_TRUE(optionNames().contains(QLatin1String("-minfree")));
    for (const QString& name : optionNames())
        EXPECT_TRUE(usage.contains(QLatin1String("\n  ") + name + QLatin1Char(' '))) << name.toStdString();
}
