#include "app/log_file.h"

#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/win32.h"
#include "text/output.h"

namespace {

struct LogFile {
    HANDLE handle = INVALID_HANDLE_VALUE;
    QString path;
    DWORD writeError = ERROR_SUCCESS;
};

LogFile& theFile()
{
    static LogFile file;
    return file;
}

// Written at once, unbuffered, so the log of a run that is stopped holds
// everything printed until then.
bool writeLog(const QByteArray& bytes)
{
    LogFile& file = theFile();
    DWORD written = 0;
    if (WriteFile(file.handle, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr)
        && written == static_cast<DWORD>(bytes.size()))
        return true;
    file.writeError = GetLastError();
    return false;
}

QString errorLine(const char* format, const QString& path, DWORD error)
{
    return fillIn(format, path, toQString(systemErrorText(error)));
}

}

bool openLogFile(const QString& path)
{
    LogFile& file = theFile();
    file.path = path;
    // Shared for writing too: two tasks, or an admin's run beside a task, append
    // to one log, each text in one write at the end of the file.
    file.handle = CreateFileW(asWide(platformPath(path).utf16()), FILE_APPEND_DATA,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file.handle == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        printText(errorLine("Error: Unable to open log file %1:%2\n", path, error));
        return false;
    }
    startLog(writeLog);
    return true;
}

void reportLogFailure()
{
    const LogFile& file = theFile();
    if (logWriteFailed())
        printText(errorLine("Error writing log file %1:%2\n", file.path, file.writeError));
}
