#pragma once
// The recursive sweep: deletes the files older than the age limit below a
// folder and removes the subfolders it leaves empty.

#include "sweep/file_time.h"

#include <QString>
#include <QStringList>

#include <cstdint>

// At most one progress line per this many whole seconds.
constexpr std::int64_t kProgressIntervalSeconds = 5;

// Sweeps folder, and with recurse its subfolders, each of which is removed
// when it ends up empty; folder itself only with removeIfEmpty. True when
// nothing was left behind (with removeIfEmpty: when the folder was removed).
// The optional out-parameters are shared by every folder of the walk. A dry
// run deletes and removes nothing, and reports as if every deletion and
// removal had succeeded.
bool sweepFolder(const QString& folder, bool& removeIfEmpty, bool& recurse, std::int32_t& maxAgeMinutes,
                 const QStringList* ignoreSuffixes, QString* errors, std::int32_t* deletedCount,
                 std::int64_t* deletedKiB, QString* log, bool& namesOnly, TimeStamp* progressStamp, bool dryRun);

// The age limit in seconds, multiplied in 32 bits: it wraps on purpose, so a
// huge limit can become negative and make every file old enough.
std::int64_t ageLimitSeconds(std::int32_t maxAgeMinutes);

// Strictly older than the limit; a limit of zero or less makes every file old
// enough.
bool isOldEnough(TimeStamp entryTime, std::int32_t maxAgeMinutes, TimeStamp now);

// Each file counts rounded to the nearest KiB, halves rounded up.
std::int64_t roundedKiB(std::int64_t size);

// The first suffix of the list that name ends with, ignoring case; null when
// none does or there is no list.
const QString* matchingSuffix(const QStringList* suffixes, const QString& name);
