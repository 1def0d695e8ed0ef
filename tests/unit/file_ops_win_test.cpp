#include "app/folder_run.h"
#include "temp_folder_win.h"

namespace {

using FileOps = TempFolderTest;

TEST_F(FileOps, FoldersAndFilesAreToldApart)
{
    const QString file = makeFile(QStringLiteral("file.txt"));
    EXPECT_TRUE(fileExists(file) && folderExists(root) && folderExists(root + QLatin1Char('\\')));
    EXPECT_FALSE(fileExists(root) || folderExists(file) || folderExists(path(QStringLiteral("missing"))));
    // Win32 reads "C:" as the current folder of drive C.
    EXPECT_FALSE(folderExists(QStringLiteral("C:")));
    // A drive whose free space cannot be read shows the stand-in.
    EXPECT_EQ(freeDriveSpaceMiB(QStringLiteral("\\\\no_such_server\\share\\x")), 1000u);
}

}
