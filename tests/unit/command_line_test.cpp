// The command line's own texts.

#include "app/command_line.h"

#include <gtest/gtest.h>

TEST(CommandLine, UsageTextHasALineForEveryOption)
{
    const QString usage = usageText();
    const QStringList names = optionNames();
    EXPECT_TRUE(names.contains(QLatin1String("-minfree")));
    for (const QString& name : names) {
        const QString line = QLatin1String("\n  ") + name;
        EXPECT_TRUE(usage.contains(line + QLatin1Char(':')) || usage.contains(line + QLatin1Char(' ')))
            << name.toStdString();
    }
}
