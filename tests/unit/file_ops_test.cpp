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
    const QString file = "\\\\?\\";
    const QString unc = "\\\\?\\UNC";
    const struct {
        QString path;
        QString forFile;
        QString forSearch;
    } cases[] = {
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

TEST(FolderOfPath, KeepsTheFolderWithATrailingBackslash)
{
    const struct {
        const char* path;
        const char* folder;
    } cases[] = {
        {"C:\\a\\b.txt", "C:\\a\\"}, {"C:\\a\\", "C:\\a\\"}, {"C:\\m", "C:\\"},
        {"\\\\server\\share", "\\\\server\\share\\"}, {"\\\\server\\share\\x", "\\\\server\\share\\"},
        {"abc", "abc\\"}, {"C:", "C:"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(folderOfPath(QString::fromLatin1(c.path)), QString::fromLatin1(c.folder)) << c.path;
}

}
