#pragma once
// The tool refuses to run outside an installation of the suite.

// True when the installation root was found. Otherwise the failure message has
// been printed and the tool ends with exit code 1.
bool checkInstallRoot(int argc, char* argv[]);
