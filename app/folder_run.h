#pragma once
// One concrete folder swept end to end, with its printed report.

#include "app/command_line.h"
#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

// The time of the last progress line, shared by every folder of the run.
TimeStamp& progressStamp();

// False when the folder does not exist; its warning has then been printed. A
// dry run reports what the run would delete and changes nothing.
bool runFolder(const QString& folder, const RunOptions& options);

// The warning for a folder to clean that is not there.
void warnMissingFolder(const QString& folder);

// The folder run on a folder already reached, held or not; the run takes the
// hold over. A hold that holds nothing is reported as a folder that could not
// be read.
struct FolderHold;
void runReachedFolder(const QString& folder, FolderHold hold, const RunOptions& options);

// Blank-separated groups of three digits, from 1001 on: 1000 stays "1000".
QString formatGroupedNumber(std::int64_t value);

// Whole MiB free to the caller on the folder's drive; 1000 when unknown.
std::uint32_t freeDriveSpaceMiB(QString path);

// The root whose free space is reported: "X:\" for a drive path, the share root
// for a network path, empty when there is none. Only the backslash separates.
QString freeSpaceRoot(const QString& path);
