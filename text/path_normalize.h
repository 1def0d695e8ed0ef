#pragma once
// Paths from the command line, the environment and configuration files are
// brought into one shape before they are compared or used.

#include "text/fixed_string.h"

#include <QChar>
#include <QString>

QString normalizePath(QString path);
FixedWideString normalizePathFixed(FixedWideString& path);
QString parentFolder(QString path, QChar separator);
FixedWideString parentFolderFixed(FixedWideString& path);
QString toBackslashPath(const QString& path);
int lastBackslash(const FixedWideString& path);
