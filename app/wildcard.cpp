#include "app/wildcard.h"

#include "text/path_normalize.h"

WildcardParts splitAtFirstWildcard(const QString& path)
{
    const qsizetype star = path.indexOf(QLatin1Char('*'));
    const QString prefix = path.left(star);
    QString rest = path.mid(star + 1);

    WildcardParts parts;
    parts.base = wildcardBase(path);
    if (parts.base.size() < prefix.size())
        parts.nameStart = prefix.mid(parts.base.size());
    const qsizetype backslash = rest.indexOf(QLatin1Char('\\'));
    if (backslash < 0) {
        parts.nameEnd = rest;
    } else {
        parts.nameEnd = rest.left(backslash);
        parts.rest = rest.mid(backslash);
    }
    return parts;
}
