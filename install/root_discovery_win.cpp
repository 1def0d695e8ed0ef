#include "install/root_discovery.h"

#include "install/app_path.h"
#include "install/root_rules.h"
#include "install/root_validation.h"
#include "text/path_normalize.h"

namespace {

// Appends the verdict to the step's line; a rejected candidate is emptied so
// that the next source is tried.
void testCandidate(QString& candidate, QString& rootLog, const char* accepted = kLogAccepted)
{
    if (isValidRoot(candidate)) {
        rootLog += QLatin1String(accepted);
    } else {
        rootLog += QLatin1String(kLogRejected);
        candidate.clear();
    }
}

void tryEnvironment(QString& candidate, QString& rootLog, const char* variable, const char* head)
{
    candidate = environmentCandidate(getEnv(QString::fromLatin1(variable)));
    rootLog += QLatin1String(head) + candidate;
    testCandidate(candidate, rootLog);
}

QString programName(const QStringList& arguments)
{
    return arguments.isEmpty() ? QString() : arguments.first();
}

// Two folders above the executable's folder: X:\suite\bin\win64\ gives X:\suite\.
QString applicationCandidate(const QStringList& arguments)
{
    QString folder;
    // Only the fallback, when the system cannot name the executable, reads
    // argv0 as 8-bit text.
    const QByteArray argv0 = programName(arguments).toLatin1();
    appFolder(arguments.isEmpty() ? nullptr : argv0.constData(), folder);
    const QChar sep = kRootSeparator.at(0);
    return parentFolder(parentFolder(normalizePath(folder), sep), sep);
}

// The same from argv[0] as given; silent, and only a valid root is kept.
QString argumentPathCandidate(const QString& argv0)
{
    const QChar sep = kRootSeparator.at(0);
    const int lastSeparator = argv0.lastIndexOf(sep);
    if (lastSeparator <= 2)
        return QString();
    const QString candidate = parentFolder(parentFolder(argv0.left(lastSeparator + 1), sep), sep);
    return isValidRoot(candidate) ? candidate : QString();
}

}

bool findInstallRoot(InstallPaths& paths, const QStringList& arguments, QString& rootLog, bool& startedOutsideRoot,
                     bool cfgGlobalFromExeRoot, bool renderAppsFromExeRoot,
                     const FixedNarrowString100& renderAppsOverride, bool win64Binaries)
{
    QString candidate;

    // The -kxRoot flag: every value is logged, the last one is tested, and a value
    // that is not a root is not cut back to the folder above "bin".
    rootLog += QLatin1String(kLogFlagHead);
    for (const QString& value : kxRootFlagValues(arguments)) {
        candidate = value;
        rootLog += value;
    }
    testCandidate(candidate, rootLog, kLogFlagAccepted);
    if (!candidate.isEmpty()) {
        const QString argv0 = programName(arguments);
        if (argv0.size() >= 2 && argv0.at(1) == QLatin1Char(':'))
            startedOutsideRoot = true;
        if (argv0.startsWith(candidate, Qt::CaseSensitive))
            startedOutsideRoot = false;
    }

    if (candidate.isEmpty())
        tryEnvironment(candidate, rootLog, "KX_ROOT_INSTALLER", kLogInstallerHead);

    // The executable's own folder. The rest of the step runs whatever the
    // candidate holds, so a root accepted above is rewritten, logged and tested
    // again here.
    if (candidate.isEmpty())
        candidate = applicationCandidate(arguments);
    candidate = toBackslashPath(replaceInternalMarker(candidate));
    rootLog += QLatin1String(kLogAppPathHead) + candidate;
    testCandidate(candidate, rootLog);

    // argv[0], which writes nothing to the log.
    if (candidate.isEmpty() && !arguments.isEmpty())
        candidate = argumentPathCandidate(programName(arguments));

    if (candidate.isEmpty())
        tryEnvironment(candidate, rootLog, "KX_ROOT", kLogEnvironmentHead);

    if (candidate.isEmpty())
        return false;

    FixedWideString250& root = paths.entries[kRootEntry];
    root = toFixedWide250(candidate);
    paths.entries[kExeRootEntry] = root;

    switch (readRelinkFile(paths, rootLog)) {
    case RelinkOutcome::CannotOpen:
        return false;
    case RelinkOutcome::Read:
        break;
    case RelinkOutcome::NoRelinkFile: {
        const QString found = toQString(root);
        if (endsWithVersionFolder(found)) {
            const QString above = parentFolder(found, kRootSeparator.at(0));
            if (isValidRoot(above))
                root = toFixedWide250(above);
        }
        break;
    }
    }

    // The status folder; the flag itself is tested undecoded.
    FixedWideString250& status = paths.entries[kStatusEntry];
    status.clear();
    for (const QString& value : loadStatusFlagValues(arguments))
        status = statusFolderEntry(value, root);

    buildInstallLayout(paths, arguments, cfgGlobalFromExeRoot, renderAppsFromExeRoot, renderAppsOverride,
                       win64Binaries);
    return true;
}
