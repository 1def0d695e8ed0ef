#include "sweep/file_ops.h"

bool needsLongPathPrefix(int length)
{
    return length >= kLongPathThreshold;
}

bool searchNeedsLongPathPrefix(int length)
{
    return length > kLongPathThreshold;
}

const FixedWideString& withLongPathPrefix(FixedWideString& destination, const FixedWideString& source)
{
    destination = source;
    if (destination.isUncPath()) {
        // \\server\share becomes \\?\UNC\server\share: one of the two leading
        // backslashes gives way to the prefix.
        destination.removeRange(0, 1);
        destination.insertAt(0, FixedWideString::fromNarrow("\\\\?\\UNC"));
    } else {
        destination.insertAt(0, FixedWideString::fromNarrow("\\\\?\\"));
    }
    return destination;
}

FixedWideString pathForFileCall(const FixedWideString& path)
{
    if (!needsLongPathPrefix(path.length))
        return path;
    FixedWideString prefixed;
    withLongPathPrefix(prefixed, path);
    return prefixed;
}

FixedWideString patternForSearchCall(const QString& pattern)
{
    const FixedWideString cut = toFixedWide(pattern);
    if (!searchNeedsLongPathPrefix(cut.length))
        return cut;
    FixedWideString prefixed;
    withLongPathPrefix(prefixed, cut);
    return prefixed;
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
