#include "app/metrics.h"

#include "sweep/error_text.h"
#include "sweep/win32.h"
#include "text/output.h"

#include <QFile>

namespace {

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

}

bool writeMetricsFile(const QString& path, const MetricsRun& run)
{
    const QByteArray bytes = metricsText(run, previousText(path)).toUtf8();
    const QString temporary = path + QLatin1String(".tmp");
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
    if (!MoveFileExW(asWide(temporary.utf16()), asWide(path.utf16()), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return fail(path, temporary, GetLastError());
    return true;
}
