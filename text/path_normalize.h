#pragma once
// Paths from the command line, the environment and configuration files are
// brought into one shape before they are compared or used.

#include "text/fixed_string.h"

#include <QChar>
#include <QString>

QString normalizePath(QString path);
FixedWideString normalizePathFixed(FixedWideString& path);

// The folder rules side by side. Each keeps the root rule its callers have
// always had, so they differ at a drive's or a share's root.

// One folder up, on the separator given. The parent of "C:\" is empty and a
// share root loses its last separator: folding "..\" past a root has always
// given these.
QString parentFolder(QString path, QChar separator);
// The same on the fixed form, with the backslash.
FixedWideString parentFolderFixed(FixedWideString& path);
// One folder up, keeping the trailing backslash; drive and share roots stay,
// since the executable's folder is never above its volume's root.
FixedNarrowString250 parentFolderNarrow(FixedNarrowString250& path);
// The folder part of a path, ending in a backslash. A path that ends in one,
// or a bare \\server\share, is a folder as it stands, since a root has no
// folder part of its own.
QString folderOfPath(QString path);
// What a listing of the folder puts in front of each name to make its full
// path: the folder with backslashes for slashes, ending in one backslash. It
// has no root rule: every folder, a root included, is listed as named.
QString folderPrefix(const QString& folder);
// The folder a path with a "*" is looked up in: the folder part of what stands
// before its first "*", slashes read as backslashes. A path without "*" names
// that folder itself.
QString wildcardBase(QString path);

QString toBackslashPath(const QString& path);
int lastBackslash(const FixedWideString& path);
