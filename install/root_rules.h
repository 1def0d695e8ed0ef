#pragma once
// The pure rules of installation-root discovery: how flag
// values are read from the command line, how candidates and the relink line are
// shaped, and the texts of rootLog. Nothing here touches the file system or the
// environment, so all of it is tested natively.

#include "install/install_paths.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// The separator added to folders, one process-wide constant.
extern const QString kRootSeparator;

// The pieces of rootLog, quoted exactly.
constexpr char kLogFlagHead[] = "\n[-kxRoot flag: ";
constexpr char kLogInstallerHead[] = "\n[KX_ROOT_INSTALLER: ";
constexpr char kLogAppPathHead[] = "\n[appPath: ";
constexpr char kLogEnvironmentHead[] = "\n[KX_ROOT: ";
constexpr char kLogRelinkHead[] = "\n[Relink ";
constexpr char kLogFlagAccepted[] = ": VALID!]";
constexpr char kLogAccepted[] = "]";
constexpr char kLogRejected[] = ": invalid]";

// The -kxRoot values, each with a backslash appended unless it ends with "\"
// or "/" (an empty value becomes a lone backslash).
QStringList kxRootFlagValues(const QStringList& arguments);

// The -loadstatus values, as they stand; the flag itself is tested undecoded.
QStringList loadStatusFlagValues(const QStringList& arguments);

// True when root discovery reads the argument after this one as a -kxRoot or
// -loadstatus value.
bool isRootFlag(const QString& argument);

// An environment variable's value as a candidate: every carriage return
// removed, and a backslash appended when it is not empty and ends with neither
// separator.
QString environmentCandidate(QString value);

// "\_internal_" (exact case, only directly after a backslash) becomes "\_".
QString replaceInternalMarker(QString candidate);

// True when the root ends with "_KX9" or "_KX9\", ignoring case.
bool endsWithVersionFolder(const QString& root);

// Entry 30 from one -loadstatus value: a stray trailing quote dropped, a
// backslash added, and a value beginning with ".." joined to the root and
// normalised.
FixedWideString250 statusFolderEntry(const QString& value, const FixedWideString250& root);

// root + sub\cfg_global\relink_win.cfg
QString relinkFilePath(const QString& root);

// Every "_debug" replaced by "_release", exact case.
QString releaseTwin(QString path);

// The first line of a relink file, applied to the paths whose entry 0 has
// already been emptied: "Root=<folder>" sets entry 0 (with a trailing
// backslash), "ExeRoot=<folder>" sets entry 29 (as it stands). Keys ignore
// case, the value is the text after the first "=", and both the line (read as
// Latin-1) and the value are trimmed. Any other line changes nothing.
void applyRelinkLine(InstallPaths& paths, const QByteArray& line);
