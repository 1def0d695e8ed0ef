// Pins: what a folder held sharing deletion allows a job, and what pinning it
// tells about a folder renamed, replaced or put back since it was held.

#include "sweep/folder_hold_win.h"

#include "temp_folder_win.h"

#include <gtest/gtest.h>

namespace {

class FolderPinTest : public TempFolderTest {
protected:
    bool rename(const QString& from, const QString& to)
    {
        return MoveFileExW(asWide(path(from).utf16()), asWide(path(to).utf16()), 0) != FALSE;
    }

    Pin pin(OwnedHandle& pinned)
    {
        DWORD error = ERROR_SUCCESS;
        return pinFolder(PinRequest{parent.handle(), QStringLiteral("job"), job.handle(), job.identity, place},
                         pinned, error);
    }

    void SetUp() override
    {
        makeFile(QStringLiteral("job/a.txt"));
        parent = holdNamedFolder(root);
        job = holdFoundFolder(parent.handle(), QStringLiteral("job"));
        ASSERT_TRUE(job.isHeld());
        place = placeOnVolume(job.handle(), 0);
        ASSERT_TRUE(place.endsWith(QStringLiteral("\\job"))) << place.toStdString();
    }

    FolderHold parent, job;
    QString place;
};

TEST_F(FolderPinTest, AHeldFolderCanBeRenamedAPinnedOneCannotAndAMovedOrReplacedOneIsNotPinned)
{
    OwnedHandle pinned;
    ASSERT_EQ(pin(pinned), Pin::Taken);
    EXPECT_FALSE(rename(QStringLiteral("job"), QStringLiteral("job2")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    pinned.close();

    // Held only: a job renames it away, and back.
    ASSERT_TRUE(rename(QStringLiteral("job"), QStringLiteral("job2")));
    EXPECT_EQ(pin(pinned), Pin::Moved);
    ASSERT_TRUE(rename(QStringLiteral("job2"), QStringLiteral("job")));
    EXPECT_EQ(pin(pinned), Pin::Taken);
    pinned.close();

    // Another folder in its place.
    ASSERT_TRUE(rename(QStringLiteral("job"), QStringLiteral("job_old")));
    makeFile(QStringLiteral("job/"));
    EXPECT_EQ(pin(pinned), Pin::Moved);
    EXPECT_FALSE(pinned.isOpen());
}

}
