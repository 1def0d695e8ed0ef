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

QString folderOfPath(QString path)
{
    const QChar backslash = QLatin1Char('\\');
    if (path.size() < 3 || path.endsWith(backslash))
        return path;

    const qsizetype last = path.lastIndexOf(backslash);
    // A bare \\server\share has no backslash between the server's name and
    // the share's, and is a folder as it stands.
    const bool bareShare = path.at(1) == backslash && path.indexOf(backslash, 2) == last;
    if (last > 1 && !bareShare)
        path.truncate(last);
    path.append(backslash);
    return path;
}

QString withFullStop(const QString& text)
{
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}
