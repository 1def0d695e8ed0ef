#pragma once
// The tool refuses to run outside an installation of the suite.

#include <QString>

// True when the installation root was found. Otherwise the failure message has
// been printed and the tool ends with exit code 1.
bool checkInstallRoot(int argc, char* argv[]);

// The failure message, before it goes to printf as the format: argv[0] as
// given, the last -kxRoot value (decoded, with a trailing backslash) and the
// discovery's rootLog, filled in one placeholder at a time.
QString rootFailureMessage(int argc, char* argv[], const QString& rootLog);
