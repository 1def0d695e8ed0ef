#include "sweep/sweep.h"

#include "temp_folder_win.h"

#include <gtest/gtest.h>

// What the command line cannot reach: suffix lists, names-only logs, the
// system attribute and removing the starting folder.

namespace {

constexpr TimeStamp kOld = 30 * 86400;

struct SweepResult {
    bool nothingLeft = false;
    QString errors, log;
    std::int32_t count = 0;
};

class SweepTest : public TempFolderTest {
protected:
    // Files older than a day go.
    SweepResult sweep(bool removeIfEmpty = false, const QStringList* ignoreSuffixes = nullptr, bool namesOnly = false)
    {
        SweepResult result;
        bool recurse = true;
        std::int32_t maxAgeMinutes = 1440;
        std::int64_t kib = 0;
        result.nothingLeft = sweepFolder(root, removeIfEmpty, recurse, maxAgeMinutes, ignoreSuffixes, &result.errors,
                                         &result.count, &kib, &result.log, namesOnly, nullptr, false);
        return result;
    }
};

TEST_F(SweepTest, IgnoredFileKeepsItsFolderButAnIgnoredFolderMakesItsParentsRemovalFail)
{
    const TimeStamp old = currentTime() - kOld;
    makeFile(QStringLiteral("job/frame.cache"), old);
    makeFile(QStringLiteral("job/keep.cache/x.txt"), old);
    makeFile(QStringLiteral("job/old.txt"), old);
    const QStringList suffixes = {QStringLiteral(".CACHE")};

    const SweepResult first = sweep(false, &suffixes);
    EXPECT_EQ(first.log, QStringLiteral("   [%1]: \n     -dir [job]\n   [%2]: \n     -ignS frame.cache   '.CACHE'\n"
                                        "     -ign [keep.cache]  '.CACHE'\n     -del old.txt\n")
                             .arg(root, path(QStringLiteral("job"))));
    EXPECT_EQ(first.errors, QString());

    // The run deletes in job, so it tries to remove it although job is new.
    QFile::remove(path(QStringLiteral("job/frame.cache")));
    makeFile(QStringLiteral("job/old.txt"), old);
    const SweepResult second = sweep(false, &suffixes);
    const QString head = QStringLiteral("Error deleting folder ") + path(QStringLiteral("job")) + QLatin1Char(':');
    EXPECT_TRUE(second.errors.startsWith(head)) << second.errors.toStdString();
    EXPECT_EQ(second.errors.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(exists(QStringLiteral("job/keep.cache/x.txt")));
    EXPECT_FALSE(second.nothingLeft);
}

// The names-only log holds just the deleted names, a hidden system file goes
// like any other, and the starting folder goes only when asked.
TEST_F(SweepTest, NamesOnlyLogSystemFilesAndTheStartingFolder)
{
    const TimeStamp now = currentTime();
    makeFile(QStringLiteral("a_old.txt"), now - kOld);
    makeFile(QStringLiteral("b_new.txt"), now);
    const QString system = makeFile(QStringLiteral("c_dir/d_old.txt"), now - kOld);
    ASSERT_TRUE(SetFileAttributesW(asWide(system.utf16()), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    const SweepResult kept = sweep(false, nullptr, true);
    EXPECT_EQ(kept.log, QStringLiteral("a_old.txt\nd_old.txt\n"));
    EXPECT_EQ(kept.count, 2);
    EXPECT_EQ(kept.errors, QString());
    EXPECT_FALSE(kept.nothingLeft || exists(QStringLiteral("c_dir")));

    ASSERT_TRUE(QFile::remove(path(QStringLiteral("b_new.txt"))));
    EXPECT_TRUE(sweep(true).nothingLeft);
    EXPECT_FALSE(QDir(root).exists());
    // A folder that is gone is nothing left, with nothing logged.
    EXPECT_TRUE(sweep(true).nothingLeft);
}

}
