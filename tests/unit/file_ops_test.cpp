#include "sweep/file_ops.h"

#include <gtest/gtest.h>

namespace {

QString padded(const char* head, int length)
{
    const QString text = QString::fromLatin1(head);
    return text + QString(length - text.size(), QLatin1Char('x'));
}

TEST(LongPathRule, PathsFromTheThresholdOnGetThePrefix)
{
    const QString file = QStringLiteral("\\\\?\\"), unc = QStringLiteral("\\\\?\\UNC");
    const struct { QString path, forFile; } cases[] = {
        {padded("C:\\", 239), padded("C:\\", 239)},
        {padded("C:\\", 240), file + padded("C:\\", 240)},
        {padded("\\\\srv\\s\\", 241), unc + padded("\\srv\\s\\", 240)},
        // Never cut: a cut path could name another entry.
        {padded("C:\\", 600), file + padded("C:\\", 600)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(pathForFileCall(c.path), c.forFile) << c.path.size();
}

}
