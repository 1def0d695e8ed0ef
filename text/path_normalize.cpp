#include "text/path_normalize.h"

// The rules exist twice, on QString with a separator chosen from the text and
// on FixedWideString with the backslash. Their odd results are deliberate and
// kept: the single collapse pass, only the first group of parent references
// folded, `\\srv\share\..\x` giving `\\srv\sharex`, `C:\..\y` giving `y`.

namespace {

constexpr char16_t kBackslash = u'\\';
constexpr char kNarrowBackslash = '\\';

} // namespace

QString normalizePath(QString path)
{
    if (path.size() < 2)
        return path;

    const QChar separator = path.contains(QLatin1Char('\\')) ? QLatin1Char('\\') : QLatin1Char('/');
    const QString doubled = QString(2, separator);
    const bool unc = path.startsWith(doubled);

    // QString::replace finds the occurrences left to right without overlap,
    // which makes the collapse a single pass: n separators give ceil(n/2).
    path.replace(doubled, QString(separator));
    if (unc)
        path.prepend(separator);

    const QString parentReference = QStringLiteral("..") + separator;
    const int first = int(path.indexOf(parentReference));
    if (first < 0)
        return path;
    QString head = path.left(first);

    // A leading placeholder "<name>" followed by parent references is never
    // folded.
    if (head.startsWith(QLatin1Char('<'))) {
        QString name = head;
        if (name.endsWith(separator))
            name.chop(1);
        if (name.endsWith(QLatin1Char('>')) && !name.contains(separator))
            return path;
    }

    QString rest = path.mid(first);
    while (rest.startsWith(parentReference)) {
        // Kept as it has always stood: a head that ends with the separator
        // contains one, so this never stops the loop.
        if (head.startsWith(QLatin1Char('<')) && head.endsWith(QLatin1Char('>') + QString(separator))
            && !head.contains(separator))
            break;
        rest.remove(0, 3);
        head = parentFolder(head, separator);
    }
    return head + rest;
}

FixedWideString normalizePathFixed(FixedWideString& path)
{
    if (path.length < 2)
        return path;

    path.toBackslashes();
    const bool unc = path.isUncPath();

    const FixedWideString single = FixedWideString::fromNarrow("\\");
    // The next search starts behind the inserted separator: one pass only.
    path.replaceAllNoCase(FixedWideString::fromNarrow("\\\\"), single);
    if (unc)
        path.insertAt(0, single);

    const FixedWideString parentReference = FixedWideString::fromNarrow("..\\");
    const int first = path.indexOfNoCase(parentReference, 0);
    if (first < 0)
        return path;
    FixedWideString head = path.left(first);

    if (head.firstUnitIs(u'<')) {
        FixedWideString name = head;
        if (name.endsWithBackslash())
            name.setLength(std::int16_t(name.length - 1));
        if (name.endsWithNoCase(FixedWideString::fromNarrow(">")) && name.indexOfUnitNoCase(kBackslash) < 0)
            return path;
    }

    FixedWideString rest = path;
    rest.removeRange(0, first);
    for (;;) {
        FixedWideString prefix = parentReference; // startsWithNoCase upper-cases it
        if (!rest.startsWithNoCase(prefix))
            break;
        // Never fires, as in the QString form.
        if (head.firstUnitIs(u'<') && head.endsWithNoCase(FixedWideString::fromNarrow(">\\"))
            && head.indexOfUnitNoCase(kBackslash) < 0)
            break;
        rest.removeRange(0, 3);
        parentFolderFixed(head);
    }
    head.append(rest);
    path = head;
    return path;
}

QString parentFolder(QString path, QChar separator)
{
    if (path.size() < 3)
        return path;
    if (path.endsWith(separator))
        path.chop(1);

    int start = 0;
    if (path.at(1) != separator) {
        start = path.at(1) == QLatin1Char(':') ? 2 : 0;
    } else {
        // UNC: the server and share stay. Without a separator at or after
        // position 2, j is -1 and the second search runs from 0.
        const int j = int(path.indexOf(separator, 2));
        start = int(path.indexOf(separator, j + 1));
        if (start < 0)
            return path; // a share root: no separator is put back
    }

    const int k = int(path.lastIndexOf(separator));
    if (k >= start)
        path.truncate(k);
    else if (k < 0)
        return QString(); // the parent of "C:\" is empty
    path.append(separator);
    return path;
}

FixedWideString parentFolderFixed(FixedWideString& path)
{
    if (path.length < 3)
        return path;
    if (path.endsWithBackslash())
        path.setLength(std::int16_t(path.length - 1));

    int start = 0;
    if (path.value[1] != kBackslash) {
        start = path.value[1] == u':' ? 2 : 0;
    } else {
        // indexOfUnitNoCase takes a start outside 1 to length - 1 as 0.
        const int j = path.indexOfUnitNoCase(kBackslash, 2);
        start = path.indexOfUnitNoCase(kBackslash, j + 1);
        if (start < 0)
            return path;
    }

    const int k = lastBackslash(path);
    if (k >= start) {
        path.setLength(std::int16_t(k));
    } else if (k < 0) {
        path.setLength(0);
        return path;
    }
    path.appendUnits(&kBackslash, 1); // dropped when the path is full
    return path;
}

FixedNarrowString250 parentFolderNarrow(FixedNarrowString250& path)
{
    if (path.length < 3)
        return path;
    if (path.endsWithBackslash())
        path.setLength(std::int16_t(path.length - 1));

    int last = path.length - 1;
    while (last >= 0 && path.value[last] != kNarrowBackslash)
        --last;

    bool cut = last >= 2; // "C:\" stays "C:\"
    if (cut && path.value[1] == kNarrowBackslash) {
        // UNC: a further backslash from position 2 on must stand before the
        // last one, so the share root "\\server\share\" is not cut.
        int further = last - 1;
        while (further >= 0 && path.value[further] != kNarrowBackslash)
            --further;
        cut = further >= 2;
    }
    if (cut)
        path.setLength(std::int16_t(last));
    if (path.length != FixedNarrowString250::kCapacity)
        path.appendUnits(&kNarrowBackslash, 1);
    return path;
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

QString folderPrefix(const QString& folder)
{
    QString prefix = toBackslashPath(folder);
    if (!prefix.endsWith(QLatin1Char('\\')))
        prefix.append(QLatin1Char('\\'));
    return prefix;
}

QString wildcardBase(QString path)
{
    const qsizetype star = path.indexOf(QLatin1Char('*'));
    if (star < 0)
        return path;
    return folderOfPath(toBackslashPath(path.left(star)));
}

QString toBackslashPath(const QString& path)
{
    QString result = path;
    result.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return result;
}

int lastBackslash(const FixedWideString& path)
{
    for (int i = path.length - 1; i >= 0; --i) {
        if (path.value[i] == kBackslash)
            return i;
    }
    return -1;
}
