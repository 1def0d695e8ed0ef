#pragma once
// The tool refuses to run outside an installation of the suite.

#include <QString>
#include <QStringList>

// True when the installation root was found. Otherwise the failure message has
// been printed and the tool ends with exit code 1.
bool checkInstallRoot(const QStringList& arguments);

// The failure message: the program's name as
// given, the last -kxRoot value (decoded, with a trailing backslash) and the
// discovery's rootLog, filled in one placeholder at a time.
QString rootFailureMessage(const QStringList& arguments, const QString& rootLog);
