#include "sweep/error_text.h"
#include "temp_folder_win.h"

namespace {

using FileOps = TempFolderTest;

TEST_F(FileOps, FoldersAndFilesAreToldApart)
{
    const QString file = path(QStringLiteral("file.txt"));
    writeFile(file);
    EXPECT_TRUE(fileExists(file) && folderExists(root) && folderExists(root + QLatin1Char('\\')));
    EXPECT_FALSE(fileExists(root) || folderExists(file) || folderExists(path(QStringLiteral("missing"))));
    // Win32 reads "C:" as the current folder of drive C.
    EXPECT_FALSE(folderExists(QStringLiteral("C:")));
}

TEST_F(FileOps, VanishedFileOrAFolderGivesNoDeletionError)
{
    EXPECT_EQ(deleteFile(path(QStringLiteral("gone.txt"))) + deleteFile(root), QString());
}

TEST_F(FileOps, FailedFolderRemovalLeavesItsErrorForAOneLineText)
{
    makeFolder(path(QStringLiteral("full/empty")));
    EXPECT_FALSE(removeFolder(path(QStringLiteral("full"))));
    const QString text = toQString(systemErrorText(kLastError));
    const QString head = QStringLiteral("Error %1: ").arg(ERROR_DIR_NOT_EMPTY);
    EXPECT_TRUE(text.startsWith(head) && text.endsWith(QStringLiteral(".."))) << text.toStdString();
    EXPECT_FALSE(text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n')));
}

}
