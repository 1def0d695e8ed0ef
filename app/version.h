#pragma once
// The tool's version, kept here alone: the banner prints it, CMake writes it
// into the exe's version resource, and scripts/release names the zip after it.
// Those two read this line as text, so keep its form: digits and dots in quotes.

#define KX_VERSION "8.4.02"
