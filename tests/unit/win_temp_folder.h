#pragma once
// A fresh folder below the Windows temporary folder for each test, with files
// of chosen age and size, removed again after the test.

#include "sweep/file_time.h"
#include "sweep/win32.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include <cstdint>

class WinTempFolderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        wchar_t temp[MAX_PATH + 1] = {};
        ASSERT_GT(GetTempPathW(MAX_PATH + 1, temp), 0u);
        const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
        root = QString::fromWCharArray(temp) + QStringLiteral("kx_") + QString::fromLatin1(info->name());
        QDir(root).removeRecursively();
        ASSERT_TRUE(QDir().mkpath(root));
    }

    void TearDown() override
    {
        makeAllWritable(root);
        QDir(root).removeRecursively();
    }

    // root + "\" + relative, with backslashes.
    QString pathOf(const QString& relative) const
    {
        return root + QLatin1Char('\\') + QString(relative).replace(QLatin1Char('/'), QLatin1Char('\\'));
    }

    // A file whose last-write time is the given time, with size bytes.
    QString makeFile(const QString& relative, TimeStamp time, std::int64_t size = 0)
    {
        const QString path = pathOf(relative);
        QDir().mkpath(path.left(path.lastIndexOf(QLatin1Char('\\'))));
        const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_WRITE, 0, nullptr,
                                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE) << path.toStdString();
        if (file == INVALID_HANDLE_VALUE)
            return path;
        const QByteArray bytes(static_cast<int>(size), 'x');
        DWORD written = 0;
        WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        const FILETIME fileTime = toFileTime(time);
        SetFileTime(file, nullptr, nullptr, &fileTime);
        CloseHandle(file);
        return path;
    }

    QString makeFolder(const QString& relative)
    {
        const QString path = pathOf(relative);
        QDir().mkpath(path);
        return path;
    }

    bool exists(const QString& relative) const { return QFileInfo::exists(pathOf(relative)); }

    static FILETIME toFileTime(TimeStamp time)
    {
        const std::uint64_t ticks = static_cast<std::uint64_t>(time) * 10000000ULL + 116444736000000000ULL;
        FILETIME fileTime;
        fileTime.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFFu);
        fileTime.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
        return fileTime;
    }

    QString root;

private:
    static void makeAllWritable(const QString& folder)
    {
        QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = QDir::toNativeSeparators(it.next());
            SetFileAttributesW(reinterpret_cast<const wchar_t*>(path.utf16()), FILE_ATTRIBUTE_NORMAL);
        }
    }
};
