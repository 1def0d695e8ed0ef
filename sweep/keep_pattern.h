#pragma once
// Name patterns for -keep: which files and folders a sweep never deletes.

#include <QString>
#include <QStringList>

// A pattern names entries of one folder: it is not empty and holds no folder
// separator.
bool isKeepPattern(const QString& pattern);

// True when pattern matches the whole name, both composed (form C), ignoring
// case as QString's case-insensitive compare does: "*" stands for any run of characters, none
// included, "?" for exactly one, and every other character for itself. It
// serves -keep and the "*" components of the folder argument alike.
bool matchesNamePattern(const QString& name, const QString& pattern);

// The first pattern, in list order, that matches name; null when none does.
const QString* matchingKeepPattern(const QStringList& patterns, const QString& name);
