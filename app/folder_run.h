#pragma once
// One concrete folder swept end to end, with its printed report.

#include "app/command_line.h"
#include "sweep/file_time.h"
#include "sweep/sweep.h"

#include <QString>

#include <cstdint>
#include <vector>

// The time of the last progress line, shared by every folder of the run.
TimeStamp& progressStamp();

// What the run's reports add up to, over every folder and pass.
struct RunTotals {
    int folders = 0;
    std::int64_t deletedFiles = 0;
    std::int64_t deletedBytes = 0;
    std::int64_t errors = 0;
    // The space the deleted files took, or would take in a dry run.
    std::int64_t freedBytes = 0;
    // The free space of the last reading, when it could be read.
    bool freeKnown = false;
    std::uint64_t freeBytes = 0;
    // The -minfree goal: whether there was one, in bytes once a volume's size
    // was read, and whether every volume met it.
    bool hasGoal = false;
    std::uint64_t goalBytes = 0;
    bool goalMet = false;
    // A named folder, a wildcard base or a match was there but could not be
    // read, so the run did not clean all it was asked to.
    bool folderUnread = false;
};

// One pass over the folders the folder argument names. The age run reports
// each folder; the scan for free space only collects the files it may delete,
// silently; the pass that frees space deletes the files changed before a time;
// locating only notes each folder and its volume.
enum class PassKind { Age, Scan, FreeSpace, Locate };

// A folder a pass reached, its volume's key, and what its age run freed.
struct LocatedFolder {
    QString folder;
    QString volume;
    std::int64_t freedBytes = 0;
};

struct FolderPass {
    const RunOptions& options;
    PassKind kind = PassKind::Age;
    // The scan: files changed before this; freeing space: the cutoff.
    TimeStamp changedBefore = 0;
    std::vector<SpaceCandidate>* candidates = nullptr;
    RunTotals* totals = nullptr;
    // Where each folder reached is noted, when it is wanted.
    std::vector<LocatedFolder>* located = nullptr;
    // The scan and the freeing pass: only the folders on this volume.
    QString onVolume;

    // Only the age run says what is missing or skipped: the later passes go
    // over the same folders.
    bool warns() const { return kind == PassKind::Age; }
};

// False when the folder does not exist; its warning has then been printed. A
// dry run reports what the run would delete and changes nothing.
bool runFolder(const QString& folder, const FolderPass& pass);

// The warning for a folder to clean that is not there.
void warnMissingFolder(const QString& folder);

// A folder to clean, or to look for matches in, that could not be reached for
// error: its warning when the error says it is not there, its error line
// otherwise, which leaves the run incomplete.
void reportUnreachedFolder(const QString& folder, std::uint32_t error, const FolderPass& pass);

// The folder run on a folder already reached, held or not; the run takes the
// hold over. A hold that holds nothing is reported as a folder that could not
// be read.
void runReachedFolder(const QString& folder, FolderHold hold, const FolderPass& pass);

// Blank-separated groups of three digits, from 1001 on: 1000 stays "1000".
QString formatGroupedNumber(std::int64_t value);
