#include "sweep/file_ops.h"

#include <gtest/gtest.h>

namespace {

QString padded(const char* head, int length)
{
    const QString text = QString::fromLatin1(head);
    return text + QString(length - text.size(), QLatin1Char('x'));
}

TEST(LongPathRule, FilesFromTheThresholdOnAndSearchesAboveIt)
{
    const QString file = QStringLiteral("\\\\?\\"), unc = QStringLiteral("\\\\?\\UNC");
    const struct { QString path, forFile, forSearch; } cases[] = {
        {padded("C:\\", 239), padded("C:\\", 239), padded("C:\\", 239)},
        {padded("C:\\", 240), file + padded("C:\\", 240), padded("C:\\", 240)},
        {padded("c:/a", 241), file + padded("c:/a", 241), file + padded("c:/a", 241)},
        {padded("\\\\srv\\s\\", 241), unc + padded("\\srv\\s\\", 240), unc + padded("\\srv\\s\\", 240)},
        // Cut at 500 first, then prefixed and cut again.
        {padded("C:\\", 600), file + padded("C:\\", 496), file + padded("C:\\", 496)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toQString(pathForFileCall(toFixedWide(c.path))), c.forFile) << c.path.size();
        EXPECT_EQ(toQString(patternForSearchCall(c.path)), c.forSearch) << c.path.size();
    }
}

}
