#include "sweep/error_text.h"
#include "temp_folder_win.h"

namespace {

using FileOps = TempFolderTest;

bool isOneLine(const QString& text)
{
    return !text.contains(QLatin1Char('\r')) && !text.contains(QLatin1Char('\n'));
}

TEST_F(FileOps, ReadOnlyHiddenSystemFileIsDeletedAndItsNeighbourStays)
{
    writeFile(path("old.txt"));
    writeFile(path("keep.txt"));
    SetFileAttributesW(asWide(toFixedWide(path("old.txt")).value),
                       FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(deleteFile(path("old.txt")), QString());
    EXPECT_FALSE(fileExists(path("old.txt")));
    EXPECT_TRUE(fileExists(path("keep.txt")));
}

TEST_F(FileOps, FileHeldWithoutSharingIsReportedAndKept)
{
    writeFile(path("held.txt"));
    const HANDLE held = CreateFileW(asWide(toFixedWide(path("held.txt")).value), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const QString error = deleteFile(path("held.txt"));
    CloseHandle(held);
    EXPECT_TRUE(error.startsWith("Unable to delete file; Error 32: ")) << error.toStdString();
    EXPECT_EQ(error, "Unable to delete file; " + toQString(systemErrorText(ERROR_SHARING_VIOLATION)) + ".");
    EXPECT_TRUE(fileExists(path("held.txt")));
}

TEST_F(FileOps, VanishedFileAndFolderPathCountAsDoneWithoutTouchingAnything)
{
    EXPECT_EQ(deleteFile(path("gone.txt")), QString());
    makeFolder(path("dir"));
    EXPECT_EQ(deleteFile(path("dir")), QString());
    EXPECT_TRUE(folderExists(path("dir")));
}

TEST_F(FileOps, FilesPastTheLongPathThresholdAreDeleted)
{
    for (const int length : {240, 380}) {
        const QString file = longFilePath(length);
        writeFile(file);
        EXPECT_TRUE(fileExists(file) && folderExists(folderOfPath(file))) << length;
        EXPECT_EQ(deleteFile(file), QString()) << length;
        EXPECT_FALSE(QFile::exists(file)) << length;
    }
}

TEST_F(FileOps, FoldersAndFilesAreToldApart)
{
    writeFile(path("file.txt"));
    EXPECT_TRUE(folderExists(root) && folderExists(root + "\\"));
    EXPECT_FALSE(folderExists(path("file.txt")) || folderExists(path("missing")) || folderExists("C:"));
    EXPECT_FALSE(fileExists(root));
}

TEST_F(FileOps, TimeAndSizeAreTheFilesLastWriteAndLength)
{
    writeFile(path("t.txt"), "12345");
    setTimes(path("t.txt"), FILETIME{0, 0x01D00000u}, FILETIME{0, 0x01D60000u});
    TimeStamp time = 0;
    std::int64_t size = 0;
    EXPECT_TRUE(fileTimeAndSize(path("t.txt"), &time, &size));
    EXPECT_EQ(time, fileTimeToSeconds(0, 0x01D60000u));
    EXPECT_EQ(size, 5);
    EXPECT_FALSE(fileTimeAndSize(root, &time, &size) || fileTimeAndSize(path("missing"), nullptr, nullptr));
}

TEST_F(FileOps, FailedFolderRemovalLeavesItsErrorForTheText)
{
    makeFolder(path("full\\empty"));
    EXPECT_FALSE(removeFolder(path("full")));
    const DWORD error = GetLastError();
    EXPECT_EQ(error, DWORD(ERROR_DIR_NOT_EMPTY));
    EXPECT_TRUE(removeFolder(path("full\\empty")));
    EXPECT_FALSE(folderExists(path("full\\empty")));
}

TEST(SystemErrorText, FramesThePlatformsTextsAndFallsBackToItsOwn)
{
    EXPECT_EQ(toQString(systemErrorText(0)), "No Error.");
    EXPECT_EQ(toQString(systemErrorText(126)), "A DLL is missing.");
    EXPECT_TRUE(toQString(systemErrorText(0xC0000005u)).startsWith("EXCEPTION: The thread tried to read from"));
    EXPECT_EQ(toQString(systemErrorText(0xE0001234u)), "ERROR code -536866252. (No system message found)");

    const QString denied = toQString(systemErrorText(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(denied.startsWith("Error 5: ") && denied.endsWith("..") && isOneLine(denied)) << denied.toStdString();
    SetLastError(ERROR_SHARING_VIOLATION);
    EXPECT_EQ(toQString(systemErrorText(kLastError)), toQString(systemErrorText(ERROR_SHARING_VIOLATION)));
}

}
