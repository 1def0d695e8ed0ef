#pragma once
// A fixture with a temporary folder of real files, removed after each test.

#include "sweep/file_ops.h"
#include "sweep/win32.h"

#include <QDateTime>
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

    // A file last written at time, with the folders on its way; a name ending
    // in "/" makes the folder alone.
    QString makeFile(const QString& name, TimeStamp time = 0, const QByteArray& bytes = "x") const
    {
        const QString file = path(name);
        EXPECT_TRUE(QDir().mkpath(file.left(file.lastIndexOf(QLatin1Char('\\')))));
        if (name.endsWith(QLatin1Char('/')))
            return file;
        QFile out(file);
        // Flushed first, so no later write dates the file anew.
        EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.flush());
        if (time != 0) {
            EXPECT_TRUE(out.setFileTime(QDateTime::fromSecsSinceEpoch(time), QFileDevice::FileModificationTime));
        }
        return file;
    }

    QTemporaryDir temp;
    const QString root = QDir::toNativeSeparators(temp.path());
};
