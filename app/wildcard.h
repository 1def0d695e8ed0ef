#pragma once

#include "app/folder_run.h"

#include <QString>

#include <cstdint>

// Runs the folder run on every folder the path names, expanding one "*"
// component at a time, depth-first. A path without "*" is run directly; one
// with a "*" is a full path.
void expandWildcardFolders(QString path, const FolderPass& pass);

// A path cut at its first "*". Only the backslash separates here.
struct WildcardParts {
    QString base;      // the folder the "*" component is looked up in
    QString nameStart; // what the component has in front of the "*"
    QString nameEnd;   // what it has behind it, up to the next backslash
    QString rest;      // from that backslash on, or empty
};

WildcardParts splitAtFirstWildcard(const QString& path);
