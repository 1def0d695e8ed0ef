#include "install/root_validation.h"

#include "install/root_rules.h"
#include "sweep/file_ops.h"

#include <QFile>

// The first test that succeeds decides; the release twin's relink file is the
// last word.
bool isValidRoot(const QString& root)
{
    if (root.isEmpty())
        return false;
    const QString sep = kRootSeparator;
    const QString cfgGlobal = root + QStringLiteral("sub") + sep + QStringLiteral("cfg_global") + sep;
    const QString win64 = root + QStringLiteral("bin") + sep + QStringLiteral("win64") + sep;
    if (fileExists(cfgGlobal + QStringLiteral("globalconfig.ini")))
        return true;
    if (folderExists(cfgGlobal))
        return true;
    if (fileExists(win64 + QStringLiteral("kxClientconsole.exe")))
        return true;
    if (fileExists(win64 + QStringLiteral("kxServerconsole.exe")))
        return true;
    if (fileExists(win64 + QStringLiteral("kxControl.exe")))
        return true;
    if (fileExists(relinkFilePath(root)))
        return true;
    return fileExists(relinkFilePath(releaseTwin(root)));
}

RelinkOutcome readRelinkFile(InstallPaths& paths, QString& rootLog)
{
    QString path = relinkFilePath(toQString(paths.entries[kRootEntry]));
    if (!fileExists(path)) {
        path = releaseTwin(path);
        if (!fileExists(path))
            return RelinkOutcome::NoRelinkFile;
    }

    // Emptied before the file is opened: a file that cannot be opened leaves no
    // root behind, and a line of no known form leaves it empty too.
    paths.entries[kRootEntry].clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return RelinkOutcome::CannotOpen;
    applyRelinkLine(paths, file.readLine());
    file.close();

    const QString root = toQString(paths.entries[kRootEntry]);
    if (!root.isEmpty()) {
        // A relinked root that fails the test is logged as such and used all
        // the same.
        rootLog += QLatin1String(kLogRelinkHead) + root;
        rootLog += QLatin1String(isValidRoot(root) ? kLogAccepted : kLogRejected);
    }
    return RelinkOutcome::Read;
}
