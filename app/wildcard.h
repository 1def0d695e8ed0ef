#pragma once

#include <QString>

#include <cstdint>

// Runs the folder run on every folder the path names, expanding one "*"
// component at a time, depth-first. A path without "*" is run directly.
void expandWildcardFolders(QString path, std::int32_t& daysOld, bool& verbose);
