#pragma once
// The recursive sweep: deletes the files older than the age limit below a
// folder and removes the subfolders it leaves empty.

#include "sweep/file_time.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

// At most one progress line per this many whole seconds.
constexpr std::int64_t kProgressIntervalSeconds = 5;

// What the sweep does with each file that the settings would delete. A dry
// run deletes and removes nothing, and reports as if every deletion and
// removal had succeeded; collecting only adds the file to the candidates,
// and changes and logs nothing.
enum class SweepMode { Delete, DryRun, Collect };

// What a sweep is asked to do, the same for every folder of the walk.
struct SweepSettings {
    SweepMode mode = SweepMode::Delete;
    // The folder itself is removed when it ends up empty; its subfolders are
    // when removesEmptiedFolder says so.
    bool removeIfEmpty = false;
    bool recurse = true;
    // Files strictly older than this go; zero or less makes every file old
    // enough.
    std::int64_t ageLimitSeconds = 0;
    AgeBy ageBy = AgeBy::Write;
    // Files and folders whose names end so are kept (files) or skipped
    // (folders, whose parent then fails to go).
    const QStringList* ignoreSuffixes = nullptr;
    // Files and folders whose names match one of these, in this order, are
    // kept before anything else about them is tested; a kept folder is not
    // entered, and its parent stays without an error.
    QStringList keepPatterns;
    // The log holds only the deleted names.
    bool namesOnly = false;
    // Frees space: a file goes when it changed before this time and the age
    // limit left it, that is when it is not old enough.
    bool freeingSpace = false;
    TimeStamp changedBefore = 0;
};

// A file that freeing space may delete: its last change and the space it takes.
struct SpaceCandidate {
    TimeStamp time;
    std::int64_t allocation;
};

struct LogSpill;

// Where a sweep reports, shared by every folder of the walk. Each is optional.
struct SweepOutputs {
    QString* errors = nullptr;
    std::int32_t* deletedCount = nullptr;
    std::int64_t* deletedKiB = nullptr;
    QString* log = nullptr;
    TimeStamp* progressStamp = nullptr;
    // The space the deleted files took, and their sizes.
    std::int64_t* freedBytes = nullptr;
    std::int64_t* deletedBytes = nullptr;
    // Where SweepMode::Collect puts each file that the settings would delete.
    std::vector<SpaceCandidate>* candidates = nullptr;
    // Where a log too long to hold goes on.
    LogSpill* logSpill = nullptr;
};

// Sweeps folder, and with recurse its subfolders, each of which is removed
// when it ends up empty. True when nothing was left behind (with
// removeIfEmpty: when the folder was removed).
bool sweepFolder(const QString& folder, const SweepSettings& settings, const SweepOutputs& outputs);

// The same on a folder already held, reached and checked by the caller; the
// sweep takes the hold over. A hold that holds nothing is reported as a folder
// that could not be read, unless it found nothing there.
struct FolderHold;
bool sweepHeldFolder(const QString& folder, FolderHold hold, const SweepSettings& settings,
                     const SweepOutputs& outputs);

// The same with the settings one by one, the age limit in minutes.
bool sweepFolder(const QString& folder, bool& removeIfEmpty, bool& recurse, std::int32_t& maxAgeMinutes,
                 const QStringList* ignoreSuffixes, QString* errors, std::int32_t* deletedCount,
                 std::int64_t* deletedKiB, QString* log, bool& namesOnly, TimeStamp* progressStamp, bool dryRun);

// Whole days in seconds, in 64 bits: no -do value wraps round to a limit that
// a young file would pass.
std::int64_t ageLimitSeconds(std::int32_t daysOld);

// Strictly older than the limit; a limit of zero or less makes every file old
// enough.
bool isOldEnough(TimeStamp entryTime, std::int64_t limitSeconds, TimeStamp now);

// Whether a subfolder that ends up empty goes: when this run deleted or
// removed something in it, or, empty already, when its own age time is old
// enough. A job's new folder stays until its first file arrives.
bool removesEmptiedFolder(bool emptiedByRun, TimeStamp folderAge, std::int64_t limitSeconds, TimeStamp now);

// Whether a file changed at time goes under the settings.
bool isDue(TimeStamp time, const SweepSettings& settings, TimeStamp now);

// Each file counts rounded to the nearest KiB, halves rounded up.
std::int64_t roundedKiB(std::int64_t size);

// The first suffix of the list that name ends with, ignoring case; null when
// none does or there is no list.
const QString* matchingSuffix(const QStringList* suffixes, const QString& name);
