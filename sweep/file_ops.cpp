#include "sweep/file_ops.h"

bool needsLongPathPrefix(int length)
{
    return length >= kLongPathThreshold;
}

QString withLongPathPrefix(const QString& path)
{
    // \\server\share becomes \\?\UNC\server\share: one of the two leading
    // backslashes gives way to the prefix.
    if (path.startsWith(QLatin1String("\\\\")))
        return QLatin1String("\\\\?\\UNC") + path.mid(1);
    return QLatin1String("\\\\?\\") + path;
}

QString pathForFileCall(const QString& path)
{
    return needsLongPathPrefix(int(path.size())) ? withLongPathPrefix(path) : path;
}

QString withFullStop(const QString& text)
{
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}
