#include "app/metrics.h"

#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/win32.h"
#include "text/output.h"

#include <QElapsedTimer>
#include <QFile>

namespace {

// Between two tries of a replace that a reader blocks.
constexpr DWORD kReplacePauseMilliseconds = 50;

// Qt gives a long path the prefix itself.
QString previousText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

bool fail(const QString& path, const QString& temporary, DWORD error)
{
    DeleteFileW(asWide(temporary.utf16()));
    printText(fillIn("Error writing metrics file %1:%2\n", path, toQString(systemErrorText(error))));
    return false;
}

// windows_exporter reads the file without delete sharing, and a rename over a
// file open so fails until it is closed.
bool replaceFile(const QString& from, const QString& to, DWORD& error)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (MoveFileExW(asWide(from.utf16()), asWide(to.utf16()), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return true;
        error = GetLastError();
        if (!retryMetricsReplace(error, timer.elapsed()))
            return false;
        Sleep(kReplacePauseMilliseconds);
    }
}

}

bool writeMetricsFile(const QString& path, const MetricsRun& run)
{
    const QByteArray bytes = utf8Bytes(metricsText(run, previousText(path)));
    const QString target = platformPath(path);
    const QString temporary = platformPath(path + QLatin1String(".tmp"));
    const HANDLE file = CreateFileW(asWide(temporary.utf16()), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return fail(path, temporary, GetLastError());
    DWORD written = 0;
    const bool complete = WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr)
        && written == static_cast<DWORD>(bytes.size());
    const DWORD writeError = complete ? ERROR_SUCCESS : GetLastError();
    CloseHandle(file);
    if (!complete)
        return fail(path, temporary, writeError);
    DWORD replaceError = ERROR_SUCCESS;
    if (!replaceFile(temporary, target, replaceError))
        return fail(path, temporary, replaceError);
    return true;
}
