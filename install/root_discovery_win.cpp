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

QString programName(int argc, char* argv[])
{
    return (argc >= 1 && argv[0] != nullptr) ? QString::fromLatin1(argv[0]) : QString();
}

// Two folders above the executable's folder: X:\suite\bin\win64\ gives X:\suite\.
QString applicationCandidate(int argc, char* argv[])
{
    FixedNarrowString250 folder;
    appFolder(argc >= 1 ? argv[0] : nullptr, folder);
    const QChar sep = kRootSeparator.at(0);
    return parentFolder(parentFolder(normalizePath(toQString(folder)), sep), sep);
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

bool findInstallRoot(InstallPaths& paths, int argc, char* argv[], QString& rootLog, bool& startedOutsideRoot,
                     bool cfgGlobalFromExeRoot, bool renderAppsFromExeRoot,
                     const FixedNarrowString100& renderAppsOverride, bool win64Binaries)
{
    QString candidate;

    // The -kxRoot flag: every value is logged, the last one is tested, and a value
    // that is not a root is not cut back to the folder above "bin".
    rootLog += QLatin1String(kLogFlagHead);
    for (const QString& value : kxRootFlagValues(argc, argv)) {
        candidate = value;
        rootLog += value;
    }
    testCandidate(candidate, rootLog, kLogFlagAccepted);
    if (!candidate.isEmpty()) {
        const QString argv0 = programName(argc, argv);
        if (argv0.size() >= 2 && argv0.at(1) == QLatin1Char(':'))
            startedOutsideRoot = true;
        if (argv0.startsWith(candidate, Qt::CaseSensitive))
            startedOutsideRoot = false;
    }

    // The installer's variable.
    if (candidate.isEmpty())
        tryEnvironment(candidate, rootLog, "KX_ROOT_INSTALLER", kLogInstallerHead);

    // The executable's own folder. The rest of the step runs whatever the
    // candidate holds, so a root accepted above is rewritten, logged and tested
    // again here.
    if (candidate.isEmpty())
        candidate = applicationCandidate(argc, argv);
    candidate = toBackslashPath(replaceInternalMarker(candidate));
    rootLog += QLatin1String(kLogAppPathHead) + candidate;
    testCandidate(candidate, rootLog);

    // argv[0], which writes nothing to the log.
    if (candidate.isEmpty() && argc >= 1)
        candidate = argumentPathCandidate(programName(argc, argv));

    // The suite's variable.
    if (candidate.isEmpty())
        tryEnvironment(candidate, rootLog, "KX_ROOT", kLogEnvironmentHead);

    if (candidate.isEmpty())
        return false;

    // The executables root defaults to the root.
    FixedWideString250& root = paths.entries[kRootEntry];
    root = toFixedWide250(candidate);
    paths.entries[kExeRootEntry] = root;

    // The relink file, or else the version-folder rule.
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
    for (const QString& value : loadStatusFlagValues(argc, argv))
        status = statusFolderEntry(value, root);

    buildInstallLayout(paths, argc, argv, cfgGlobalFromExeRoot, renderAppsFromExeRoot, renderAppsOverride,
                       win64Binaries);
    return true;
}
