#include "sweep/sweep.h"

#include "temp_folder_win.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int32_t kOneDayMinutes = 1440;
constexpr TimeStamp kOneDay = 86400;
constexpr TimeStamp kYear = 365 * kOneDay;

struct SweepResult {
    bool nothingLeft = false;
    QString errors;
    QString log;
    std::int32_t count = 0;
    std::int64_t kib = 0;
};

class SweepTest : public TempFolderTest {
protected:
    SweepResult sweep(const QString& folder, std::int32_t maxAgeMinutes, bool removeIfEmpty = false,
                      const QStringList* ignoreSuffixes = nullptr, bool namesOnly = false)
    {
        SweepResult result;
        bool recurse = true;
        TimeStamp farFuture = currentTime() + kYear;
        result.nothingLeft = sweepFolder(folder, removeIfEmpty, recurse, maxAgeMinutes, ignoreSuffixes,
                                         &result.errors, &result.count, &result.kib, &result.log, namesOnly,
                                         &farFuture);
        return result;
    }
};

// The sweep reads the clock itself, so the boundary is checked only on a run
// that began and ended within one second; then its "now" is known exactly.
TEST_F(SweepTest, FileExactlyAtTheLimitOrYoungerIsKept)
{
    for (int attempt = 0; attempt < 50; ++attempt) {
        const TimeStamp before = currentTime();
        makeFile(QStringLiteral("older.txt"), before - kOneDay - 1);
        makeFile(QStringLiteral("at_limit.txt"), before - kOneDay);
        makeFile(QStringLiteral("younger.txt"), before - kOneDay + 1);
        const SweepResult result = sweep(root, kOneDayMinutes);
        if (currentTime() != before)
            continue;
        EXPECT_FALSE(exists(QStringLiteral("older.txt")));
        EXPECT_TRUE(exists(QStringLiteral("at_limit.txt")));
        EXPECT_TRUE(exists(QStringLiteral("younger.txt")));
        EXPECT_EQ(result.count, 1);
        EXPECT_FALSE(result.nothingLeft);
        return;
    }
    FAIL() << "no sweep ran within a single second";
}

TEST_F(SweepTest, OldTreeIsRemovedBottomUpButTheStartingFolderStays)
{
    const TimeStamp old = currentTime() - 30 * kOneDay;
    makeFile(QStringLiteral("a.txt"), old, 511);
    makeFile(QStringLiteral("jobs/b.txt"), old, 512);
    makeFile(QStringLiteral("jobs/deep/c.txt"), old, 1535);
    makeFile(QStringLiteral("jobs/deep/d.txt"), old, 0);
    makeFolder(path(QStringLiteral("empty")));

    const SweepResult result = sweep(root, kOneDayMinutes);

    EXPECT_TRUE(result.nothingLeft);
    EXPECT_EQ(result.count, 4);
    EXPECT_EQ(result.kib, 2);
    EXPECT_EQ(result.errors, QString());
    EXPECT_TRUE(QDir(root).exists());
    EXPECT_TRUE(QDir(root).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System));
}

TEST_F(SweepTest, OneYoungFileKeepsItsFolderAndParentsWithoutErrors)
{
    const TimeStamp now = currentTime();
    makeFile(QStringLiteral("jobs/shot/new.exr"), now - 60);
    makeFile(QStringLiteral("jobs/old.exr"), now - 30 * kOneDay);

    const SweepResult result = sweep(root, kOneDayMinutes);

    EXPECT_TRUE(exists(QStringLiteral("jobs/shot/new.exr")));
    EXPECT_FALSE(exists(QStringLiteral("jobs/old.exr")));
    EXPECT_EQ(result.count, 1);
    EXPECT_EQ(result.errors, QString());
    EXPECT_TRUE(result.log.contains(QStringLiteral("     -ignT new.exr\n")));
}

TEST_F(SweepTest, NoAgeLimitDeletesEvenFutureFiles)
{
    makeFile(QStringLiteral("future.txt"), currentTime() + kOneDay);
    makeFile(QStringLiteral("sub/now.txt"), currentTime());

    const SweepResult result = sweep(root, 0);

    EXPECT_EQ(result.count, 2);
    EXPECT_FALSE(exists(QStringLiteral("future.txt")));
    EXPECT_FALSE(exists(QStringLiteral("sub")));
}

TEST_F(SweepTest, ReadOnlyHiddenAndSystemFilesAreDeleted)
{
    const TimeStamp old = currentTime() - 30 * kOneDay;
    const DWORD attributes[] = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM};
    for (DWORD attribute : attributes) {
        const QString file = makeFile(QStringLiteral("f%1.txt").arg(attribute), old);
        ASSERT_TRUE(SetFileAttributesW(asWide(toFixedWide(file).value), attribute));
    }

    const SweepResult result = sweep(root, kOneDayMinutes);

    EXPECT_EQ(result.count, 3);
    EXPECT_EQ(result.errors, QString());
    EXPECT_TRUE(QDir(root).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System));
}

TEST_F(SweepTest, LockedFileGivesItsErrorLineAndNothingElseIsLost)
{
    const TimeStamp old = currentTime() - 30 * kOneDay;
    makeFile(QStringLiteral("sub/a.txt"), old);
    const QString locked = makeFile(QStringLiteral("sub/b.txt"), old);
    makeFile(QStringLiteral("sub/c.txt"), old);
    const HANDLE holder = CreateFileW(asWide(toFixedWide(locked).value), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);

    const SweepResult result = sweep(root, kOneDayMinutes);
    CloseHandle(holder);

    EXPECT_FALSE(exists(QStringLiteral("sub/a.txt")));
    EXPECT_TRUE(exists(QStringLiteral("sub/b.txt")));
    EXPECT_FALSE(exists(QStringLiteral("sub/c.txt")));
    EXPECT_EQ(result.count, 2);
    EXPECT_FALSE(result.nothingLeft);
    const QString head = locked + QStringLiteral(":Unable to delete file; Error 32: ");
    EXPECT_TRUE(result.errors.startsWith(head)) << result.errors.toStdString();
    EXPECT_TRUE(result.errors.endsWith(QStringLiteral("..\n"))) << result.errors.toStdString();
    EXPECT_EQ(result.errors.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(result.log.contains(QStringLiteral("     -del b.txt\n")));
}

TEST_F(SweepTest, FullLogNamesEveryDecisionInListingOrder)
{
    const TimeStamp now = currentTime();
    makeFile(QStringLiteral("a_old.txt"), now - 30 * kOneDay);
    makeFile(QStringLiteral("b_new.txt"), now);
    makeFile(QStringLiteral("c_dir/d_old.txt"), now - 30 * kOneDay);

    const SweepResult result = sweep(root, kOneDayMinutes);

    const QString sub = root + QStringLiteral("\\c_dir");
    EXPECT_EQ(result.log, QStringLiteral("   [") + root + QStringLiteral("]: \n"
                                                                   "     -del a_old.txt\n"
                                                                   "     -ignT b_new.txt\n"
                                                                   "     -dir [c_dir]\n"
                                                                   "   [")
                              + sub + QStringLiteral("]: \n"
                                                     "     -del d_old.txt\n"));
}

TEST_F(SweepTest, NamesOnlyLogHoldsJustTheDeletedNames)
{
    const TimeStamp now = currentTime();
    makeFile(QStringLiteral("a_old.txt"), now - 30 * kOneDay);
    makeFile(QStringLiteral("b_new.txt"), now);
    makeFile(QStringLiteral("c_dir/d_old.txt"), now - 30 * kOneDay);

    const SweepResult result = sweep(root, kOneDayMinutes, false, nullptr, true);

    EXPECT_EQ(result.log, QStringLiteral("a_old.txt\nd_old.txt\n"));
}

TEST_F(SweepTest, IgnoredFolderMakesItsParentsRemovalFail)
{
    const TimeStamp old = currentTime() - 30 * kOneDay;
    makeFile(QStringLiteral("job/frame.cache"), old);
    makeFile(QStringLiteral("job/keep.cache/x.txt"), old);
    makeFile(QStringLiteral("job/old.txt"), old);
    const QStringList suffixes = {QStringLiteral(".CACHE")};

    const SweepResult result = sweep(root, kOneDayMinutes, false, &suffixes);

    EXPECT_TRUE(exists(QStringLiteral("job/frame.cache")));
    EXPECT_TRUE(exists(QStringLiteral("job/keep.cache/x.txt")));
    EXPECT_FALSE(exists(QStringLiteral("job/old.txt")));
    EXPECT_TRUE(result.log.contains(QStringLiteral("     -ignS frame.cache   '.CACHE'\n")));
    EXPECT_TRUE(result.log.contains(QStringLiteral("     -ign [keep.cache]  '.CACHE'\n")));
    // The ignored file keeps job; only a folder whose sole remains are ignored
    // folders tries, and fails, to remove itself.
    EXPECT_EQ(result.errors, QString());

    QFile::remove(path(QStringLiteral("job/frame.cache")));
    const SweepResult second = sweep(root, kOneDayMinutes, false, &suffixes);
    const QString head = QStringLiteral("Error deleting folder ") + path(QStringLiteral("job")) + QLatin1Char(':');
    EXPECT_TRUE(second.errors.startsWith(head)) << second.errors.toStdString();
    EXPECT_EQ(second.errors.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(exists(QStringLiteral("job/keep.cache/x.txt")));
}

TEST_F(SweepTest, StartingFolderIsRemovedOnlyWhenAsked)
{
    makeFile(QStringLiteral("old.txt"), currentTime() - 30 * kOneDay);
    EXPECT_TRUE(sweep(root, kOneDayMinutes, true).nothingLeft);
    EXPECT_FALSE(QDir(root).exists());
    EXPECT_TRUE(sweep(root, kOneDayMinutes, true).nothingLeft);
}

TEST_F(SweepTest, ProgressLineIsPrintedWhenTheStampHasElapsed)
{
    makeFile(QStringLiteral("sub/x.txt"), currentTime());
    QString errors;
    std::int32_t maxAge = kOneDayMinutes;
    bool removeIfEmpty = false;
    bool recurse = true;
    bool namesOnly = false;

    TimeStamp stamp = 0;
    ::testing::internal::CaptureStdout();
    sweepFolder(root, removeIfEmpty, recurse, maxAge, nullptr, &errors, nullptr, nullptr, nullptr, namesOnly, &stamp);
    fflush(stdout);
    const std::string first = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(first, "     ..." + root.toStdString() + "...\n");
    EXPECT_GT(stamp, 0);

    ::testing::internal::CaptureStdout();
    sweepFolder(root, removeIfEmpty, recurse, maxAge, nullptr, &errors, nullptr, nullptr, nullptr, namesOnly, &stamp);
    fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(SweepTest, MissingFolderIsNothingLeftWithoutAnyOutput)
{
    const SweepResult result = sweep(path(QStringLiteral("absent")), kOneDayMinutes);
    EXPECT_TRUE(result.nothingLeft);
    EXPECT_EQ(result.log, QString());
    EXPECT_EQ(result.count, 0);
}

}
