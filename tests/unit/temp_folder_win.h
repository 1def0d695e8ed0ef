#pragma once
// A fixture with a temporary folder of real files, removed after each test.

#include "sweep/file_ops.h"
#include "sweep/win32.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class TempFolderTest : public ::testing::Test {
protected:
    QString path(const QString& name) const { return root + QLatin1Char('\\') + name; }

    // Qt gives long paths the prefix itself, so these work at any length.
    static void makeFolder(const QString& path) { ASSERT_TRUE(QDir().mkpath(path)); }
    static void writeFile(const QString& path, const QByteArray& bytes = "x")
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    static void setTimes(const QString& path, FILETIME created, FILETIME written)
    {
        const HANDLE file = CreateFileW(asWide(toFixedWide(path).value), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_TRUE(SetFileTime(file, &created, nullptr, &written));
        CloseHandle(file);
    }

    // A file path of exactly length units, below folders of 100-unit names.
    QString longFilePath(int length) const
    {
        QString folder = root;
        while (length - folder.size() > 120)
            folder += QLatin1Char('\\') + QString(100, QLatin1Char('d'));
        makeFolder(folder);
        return folder + QLatin1Char('\\') + QString(length - folder.size() - 1, QLatin1Char('f'));
    }

    QTemporaryDir temp;
    const QString root = QDir::toNativeSeparators(temp.path());
};
