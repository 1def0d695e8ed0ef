#include "app/startup_check.h"

#include "install/root_discovery.h"
#include "text/platform_printf.h"

bool checkInstallRoot(int argc, char* argv[])
{
    // One layout per process, on the heap and never freed: like every tool of
    // the suite this one keeps its installation layout for the whole run, so
    // the object must outlive this call, and the process end reclaims it (no
    // destructor runs at exit, nothing can be left pointing at freed paths).
    static InstallPaths* const installPaths = new InstallPaths;

    QString rootLog;
    bool startedOutsideRoot = false;
    const FixedNarrowString100 renderAppsOverride;
    if (findInstallRoot(*installPaths, argc, argv, rootLog, startedOutsideRoot, false, false, renderAppsOverride,
                        true))
        return true;

    // The message is the format itself, deliberately: a "%" in a path or in
    // rootLog is interpreted by msvcrt's printf, as the suite's tools have
    // always done.
    const QByteArray message = rootFailureMessage(argc, argv, rootLog).toLatin1();
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    platformPrintf(message.constData());
#pragma GCC diagnostic pop
    return false;
}
