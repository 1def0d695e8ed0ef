#include "app/startup_check.h"

#include "install/root_discovery.h"
#include "text/output.h"

bool checkInstallRoot(const QStringList& arguments)
{
    // One layout per process, on the heap and never freed: like every tool of
    // the suite this one keeps its installation layout for the whole run, so
    // the object must outlive this call, and the process end reclaims it (no
    // destructor runs at exit, nothing can be left pointing at freed paths).
    static InstallPaths* const installPaths = new InstallPaths;

    QString rootLog;
    bool startedOutsideRoot = false;
    const FixedNarrowString100 renderAppsOverride;
    if (findInstallRoot(*installPaths, arguments, rootLog, startedOutsideRoot, false, false, renderAppsOverride,
                        true))
        return true;

    // Printed as text: a "%" in a path or in rootLog is a character.
    printText(rootFailureMessage(arguments, rootLog));
    return false;
}
