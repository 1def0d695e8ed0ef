// Pins: what a folder held sharing deletion allows a job, and what pinning it
// tells about a folder renamed, replaced or put back since it was held.

#include "sweep/folder_hold_win.h"

#include "temp_folder_win.h"

#include <gtest/gtest.h>

namespace {

using FolderPinTest = TempFolderTest;

TEST_F(FolderPinTest, AHeldFolderCanBeRenamedAPinnedOneCannotAndAMovedOrReplacedOneIsNotPinned)
{
    makeFile(QStringLiteral("job/a.txt"));
    const FolderHold parent = holdNamedFolder(root);
    const FolderHold job = holdFoundFolder(parent, QStringLiteral("job"));
    const QString place = placeOnVolume(job.handle(), 0);
    ASSERT_TRUE(job.isHeld() && place.endsWith(QStringLiteral("\\job"))) << place.toStdString();
    const auto rename = [this](const char* from, const char* to) {
        return MoveFileExW(asWide(path(QLatin1String(from)).utf16()), asWide(path(QLatin1String(to)).utf16()), 0);
    };
    OwnedHandle pinned;
    QString expected = place;
    const auto pin = [&] {
        DWORD error = ERROR_SUCCESS;
        pinned.close();
        return pinFolder(PinRequest{parent.handle(), QStringLiteral("job"), job.handle(), job.identity, expected},
                         pinned, error);
    };
    ASSERT_EQ(pin(), Pin::Taken);
    EXPECT_FALSE(rename("job", "job2"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    pinned.close();
    // Held only: a job renames it away, and back.
    ASSERT_TRUE(rename("job", "job2"));
    EXPECT_EQ(pin(), Pin::Moved);
    ASSERT_TRUE(rename("job2", "job"));
    EXPECT_EQ(pin(), Pin::Taken);
    // The very folder, no longer where it was reached: a folder above it moved.
    expected = QStringLiteral("\\moved") + place;
    EXPECT_EQ(pin(), Pin::Moved);
    expected = place;
    // Another folder in its place.
    ASSERT_TRUE(rename("job", "job_old"));
    makeFile(QStringLiteral("job/"));
    EXPECT_EQ(pin(), Pin::Moved);
    EXPECT_FALSE(pinned.isOpen());
}

}
