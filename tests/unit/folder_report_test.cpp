#include "app/folder_run.h"
#include "app/wildcard.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(FolderReport, GroupsDigitsFromOneThousandAndOneOn)
{
    const struct {
        std::int64_t value;
        const char* text;
    } cases[] = {
        {999, "999"}, {1000, "1000"}, {1001, "1 001"}, {1000000, "1000 000"}, {1001000, "1 001 000"},
        {1234567890, "1 234 567 890"}, {-1500, "-1 500"},
        // Three groups at most; what stands in front is printed whole.
        {1234567890123LL, "1234 567 890 123"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036 854 775 808"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatGroupedNumber(c.value), QString::fromLatin1(c.text)) << c.value;
}

TEST(FolderReport, FreeSpaceRootOfDriveAndSharePaths)
{
    const struct {
        const char* path;
        const char* root;
    } cases[] = {
        {"C:\\temp\\x", "C:\\"}, {"C:", ""}, {"\\\\srv\\share\\folder", "\\\\srv\\share\\"},
        {"\\\\srv\\share", ""}, {"//srv/share/folder", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(freeSpaceRoot(QString::fromLatin1(c.path)), QString::fromLatin1(c.root)) << c.path;
}

// Runs on K: show the rest of the split; a share cannot be named there.
// Input, then base|nameStart|rest.
TEST(WildcardSplit, ABareShareIsAFolderAsItStands)
{
    const char* const cases[][2] = {
        {"\\\\srv\\share*\\x", "\\\\srv\\share\\||\\x"},
        {"\\\\srv\\share\\m*", "\\\\srv\\share\\|m|"},
    };
    for (const auto& c : cases) {
        const WildcardParts parts = splitAtFirstWildcard(QString::fromLatin1(c[0]));
        EXPECT_EQ(QStringList({parts.base, parts.nameStart, parts.rest}).join(QLatin1Char('|')),
                  QString::fromLatin1(c[1]))
            << c[0];
    }
}

}
