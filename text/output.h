#pragma once
// Everything the tool prints goes through here: to the console as Latin-1,
// with "?" for what Latin-1 lacks, through the run-time library's printf; and,
// once a log is opened, to the log whole, in UTF-8 with CR LF line ends. What
// was printed before the log opened reaches it when it opens.

#include <QByteArray>
#include <QString>

// Writes bytes to the log; false when the write failed.
using LogWriter = bool (*)(const QByteArray& bytes);

// A text reaches the log in one write, so another run appending to the same
// log never splits its lines.
void printText(const QString& text);

// From now on every text also goes to writer, starting with what was printed
// so far, in one write. A writer that fails is not called again.
void startLog(LogWriter writer);

// No log will open: what was printed so far is kept no longer, nor is what
// comes.
void forgoLog();

// True when a write to the log failed.
bool logWriteFailed();

// The console's form of a printed text: Latin-1, with one "?" for each
// character it lacks, a character outside the Basic Multilingual Plane too.
QByteArray consoleBytes(const QString& text);

// The log's form of a printed text: UTF-8, each line feed as CR LF.
QByteArray logBytes(const QString& text);

// UTF-8, with U+FFFD for a surrogate that has no partner: a file name may hold
// one, and UTF-8 has no form for it.
QByteArray utf8Bytes(const QString& text);

// Latin-1 text with its values filled in at once, so a "%1" inside a value is
// never filled by a later one.
QString fillIn(const char* format, const QString& first);
QString fillIn(const char* format, const QString& first, const QString& second);
