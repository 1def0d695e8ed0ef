#include "sweep/sweep.h"

#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "text/platform_printf.h"

namespace {

// What one sweep writes to, shared by every level of the recursion.
struct SweepOutputs {
    const QStringList* ignoreSuffixes;
    QString* errors;
    std::int32_t* deletedCount;
    std::int64_t* deletedKiB;
    QString* log;
    bool namesOnly;

    // Every line but the deleted names needs the full log.
    bool fullLog() const { return log != nullptr && !namesOnly; }
};

// What one folder's sweep has left behind.
struct FolderVerdict {
    bool nothingLeft = true;
    bool kept = false;
    bool failed = false;
};

void printProgress(const QString& folder, TimeStamp* progressStamp, TimeStamp now)
{
    if (progressStamp == nullptr)
        return;
    if (hasElapsed(*progressStamp, kProgressIntervalSeconds, true, &now))
        platformPrintf("     ...%s...\n", folder.toLatin1().constData());
}

void sweepFile(DirListingHandle& listing, std::int32_t maxAgeMinutes, TimeStamp now, const SweepOutputs& out,
               FolderVerdict& verdict)
{
    const QString name = listing::name(listing);
    if (const QString* suffix = matchingSuffix(out.ignoreSuffixes, name)) {
        if (out.fullLog())
            out.log->append(QLatin1String("     -ignS ") + name + QLatin1String("   '") + *suffix + QLatin1String("'\n"));
        verdict.kept = true;
        verdict.nothingLeft = false;
        return;
    }
    if (!isOldEnough(listing::time(listing), maxAgeMinutes, now)) {
        if (out.fullLog())
            out.log->append(QLatin1String("     -ignT ") + name + QLatin1Char('\n'));
        verdict.kept = true;
        verdict.nothingLeft = false;
        return;
    }

    const std::int64_t size = listing::size(listing);
    // Written before the attempt, so it also stands for a deletion that fails.
    if (out.log != nullptr)
        out.log->append((out.namesOnly ? QString() : QStringLiteral("     -del ")) + name + QLatin1Char('\n'));

    const QString path = listing::fullPath(listing);
    const QString failure = deleteFile(path);
    if (failure.isEmpty()) {
        if (out.deletedCount != nullptr)
            ++*out.deletedCount;
        if (out.deletedKiB != nullptr)
            *out.deletedKiB += roundedKiB(size);
        return;
    }
    if (out.errors != nullptr)
        out.errors->append(path + QLatin1Char(':') + failure + QLatin1Char('\n'));
    verdict.failed = true;
    verdict.nothingLeft = false;
}

void sweepSubfolder(DirListingHandle& listing, bool& recurse, std::int32_t& maxAgeMinutes, const SweepOutputs& out,
                    bool& namesOnly, TimeStamp* progressStamp, FolderVerdict& verdict)
{
    if (!recurse)
        return;
    const QString name = listing::name(listing);
    // Unlike an ignored file, an ignored folder leaves the kept flag alone: the
    // parent still tries to remove itself, fails on the folder inside and
    // reports that.
    if (const QString* suffix = matchingSuffix(out.ignoreSuffixes, name)) {
        if (out.fullLog())
            out.log->append(QLatin1String("     -ign [") + name + QLatin1String("]  '") + *suffix + QLatin1String("'\n"));
        verdict.nothingLeft = false;
        return;
    }
    if (out.fullLog())
        out.log->append(QLatin1String("     -dir [") + name + QLatin1String("]\n"));

    const bool emptied = sweepFolder(listing::fullPath(listing), recurse, recurse, maxAgeMinutes, out.ignoreSuffixes,
                                     out.errors, out.deletedCount, out.deletedKiB, out.log, namesOnly, progressStamp);
    if (!emptied) {
        verdict.kept = true;
        verdict.nothingLeft = false;
    }
}

}

bool sweepFolder(const QString& folder, bool& removeIfEmpty, bool& recurse, std::int32_t& maxAgeMinutes,
                 const QStringList* ignoreSuffixes, QString* errors, std::int32_t* deletedCount,
                 std::int64_t* deletedKiB, QString* log, bool& namesOnly, TimeStamp* progressStamp)
{
    if (!folderExists(folder))
        return true;

    FolderVerdict verdict;
    const SweepOutputs out{ignoreSuffixes, errors, deletedCount, deletedKiB, log, namesOnly};

    // The whole folder is read, and its search handle closed, before anything
    // in it is deleted.
    DirListingHandle listing = nullptr;
    listing::create(listing);
    listing::open(listing, folder, true, true, false, false);

    if (out.fullLog())
        log->append(QLatin1String("   [") + folder + QLatin1String("]: \n"));
    const TimeStamp now = currentTime();
    printProgress(folder, progressStamp, now);

    while (listing::next(listing)) {
        if (listing::isFolder(listing))
            sweepSubfolder(listing, recurse, maxAgeMinutes, out, namesOnly, progressStamp, verdict);
        else
            sweepFile(listing, maxAgeMinutes, now, out, verdict);
    }

    bool result = verdict.nothingLeft;
    if (!verdict.kept && !verdict.failed && removeIfEmpty) {
        result = removeFolder(folder);
        if (!result && errors != nullptr)
            errors->append(QLatin1String("Error deleting folder ") + folder + QLatin1Char(':')
                           + toQString(systemErrorText(kLastError)) + QLatin1Char('\n'));
    }
    listing::destroy(listing);
    return result;
}
