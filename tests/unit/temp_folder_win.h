#pragma once
// A fixture with a temporary folder of real files, removed after each test.

#include "sweep/file_ops.h"
#include "sweep/win32.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class TempFolderTest : public ::testing::Test {
protected:
    // root + "\" + name, where name may separate its folders with "/".
    QString path(const QString& name) const
    {
        return root + QLatin1Char('\\') + QString(name).replace(QLatin1Char('/'), QLatin1Char('\\'));
    }
    bool exists(const QString& name) const { return QFileInfo::exists(path(name)); }

    static void makeFolder(const QString& path) { ASSERT_TRUE(QDir().mkpath(path)); }
    static void writeFile(const QString& path, const QByteArray& bytes = "x")
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    static void setTimes(const QString& path, FILETIME created, FILETIME written)
    {
        const HANDLE file = CreateFileW(asWide(path.utf16()), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_TRUE(SetFileTime(file, &created, nullptr, &written));
        CloseHandle(file);
    }

    static FILETIME fileTimeOf(TimeStamp seconds)
    {
        const std::uint64_t ticks = static_cast<std::uint64_t>(seconds) * 10000000ULL + 116444736000000000ULL;
        return FILETIME{static_cast<DWORD>(ticks & 0xFFFFFFFFu), static_cast<DWORD>(ticks >> 32)};
    }

    // A file of size bytes last written at time, with the folders on its way.
    QString makeFile(const QString& name, TimeStamp time, int size = 0)
    {
        const QString file = path(name);
        makeFolder(file.left(file.lastIndexOf(QLatin1Char('\\'))));
        writeFile(file, QByteArray(size, 'x'));
        setTimes(file, fileTimeOf(time), fileTimeOf(time));
        return file;
    }

    QTemporaryDir temp;
    const QString root = QDir::toNativeSeparators(temp.path());
};
