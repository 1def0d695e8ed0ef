#include "app/command_line.h"

#include "app/version.h"
#include "install/root_rules.h"
#include "sweep/keep_pattern.h"
#include "app/folder_name.h"
#include "text/output.h"

#include <algorithm>

namespace {

const char* const kBannerRule = ".----------------------------------------------------------------\n";
const char* const kToolName = ". kxDeleteOldFiles ";
const char* const kVersion = " " KX_VERSION;
const char* const kMakerNotice = "Part of the KX render farm suite. Removes old files and emptied folders.";

const char* const kUsageLines[] = {
    "\nUsage:\n\n",
    "  kxDeleteOldFiles   directory  [-do <days_old>]  [-age write|newest]  [-v]\n",
    "\n",
    "  directory: The directory to remove files from.\n",
    "             Subfolders are automatically searched as well. Empty subfolders are deleted.\n",
    "             The directory can contain a folder with a * wildcard to be replaced by ALL folder found\n",
    "  -do <days_old>: This tool does not delete files if they are not older than <days_old> days. Default: 14 days\n",
    "  -age write|newest: Age counts from the last write (default), or from the newest of it and the change time.\n",
    "  -v: Enable verbose messages.\n",
    "  -dryrun: List what would be deleted, and delete nothing.\n",
    "  -keep <pattern>: Never delete files or folders whose name matches <pattern> (* and ? wildcards, repeatable).\n",
    "  -log <file>: Append this report to <file>, in UTF-8.\n",
    "  -minfree <size>: Then delete the oldest files until the drive has <size> free (50G, 15%).\n",
    "  -freeto <size>: Once below the -minfree goal, delete until the drive has <size> free.\n",
    "  -minage <days>: Never delete files younger than this to free space. Default: 1 day\n",
    "  -prom <file>: Write this run's figures to <file> for Prometheus (textfile collector).\n",
    "  -check: Only tell whether the -minfree goal is met (exit code 4 if not); delete and write nothing.\n",
    "Note: There is no required order for the commandline flags\n",
    "\n",
    "\n",
    "Example commandlines: \n",
    "   Delete files from folder C:\\temp \n",
    "       kxDeleteOldFiles C:\\temp -do 7  \n",
    "\n",
    "   Delete files from the temp folder of all users\n",
    "       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n",
    "\n",
    "   Delete files from the temp folder of all users starting with 'm'\n",
    "       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n",
    "\n",
    "\n",
};

const char* const kMinAgeError = "Error: -minage needs a number of days and -minfree, not '%1'!\n";
const char* const kFreeToError = "Error: -freeto needs a size such as 50G or 15% and -minfree, not '%1'!\n";

// Dashes that an editor's autocorrect or a chat puts where "-" was typed.
bool isDash(QChar c)
{
    const char16_t unit = c.unicode();
    return unit == u'-' || (unit >= u'\u2010' && unit <= u'\u2015') || unit == u'\u2212' || unit == u'\uFE58'
           || unit == u'\uFE63' || unit == u'\uFF0D';
}

bool beginsWithDash(const QString& text)
{
    return !text.isEmpty() && isDash(text.at(0));
}

// Digits in other scripts, blanks and a plus sign are numbers to Qt, never to
// an admin's script.
bool isAsciiInteger(const QString& value)
{
    const QString digits = value.startsWith(QLatin1Char('-')) ? value.mid(1) : value;
    return !digits.isEmpty()
           && std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

int refuse(const char* format, const QString& value, int code = kExitBadOption)
{
    printText(fillIn(format, value));
    return code;
}

int refuse(const char* text)
{
    printText(QString::fromLatin1(text));
    return kExitBadOption;
}

int readDaysOld(const QString& value, RunOptions& options)
{
    bool converted = false;
    options.daysOld = value.toInt(&converted, 10);
    if (!converted || !isAsciiInteger(value))
        return refuse("Error: Unable to convert %1 into a number!\n", value, kExitBadDaysOld);
    // A stray minus would make every file old enough, those dated in the
    // future included; "-0" is refused with the others.
    if (options.daysOld < 0 || value.startsWith(QLatin1Char('-')))
        return refuse("Error: -do needs a number of days of 0 or more, not '%1'!\n", value, kExitBadDaysOld);
    return kExitOk;
}

int readAgeBy(const QString& value, RunOptions& options)
{
    if (value.compare(QLatin1String("write"), Qt::CaseInsensitive) == 0)
        options.ageBy = AgeBy::Write;
    else if (value.compare(QLatin1String("newest"), Qt::CaseInsensitive) == 0)
        options.ageBy = AgeBy::Newest;
    else
        return refuse("Error: -age needs write or newest, not '%1'!\n", value);
    return kExitOk;
}

int readKeepPattern(const QString& value, RunOptions& options)
{
    if (!isKeepPattern(value))
        return refuse("Error: -keep needs a name pattern without a folder separator, not '%1'!\n", value);
    options.keepPatterns.append(value);
    return kExitOk;
}

int readLogFile(const QString& value, RunOptions& options)
{
    options.logFile = value;
    options.hasLogFile = true;
    return kExitOk;
}

int readPromFile(const QString& value, RunOptions& options)
{
    options.promFile = value;
    options.hasPromFile = true;
    return kExitOk;
}

int readFreeGoal(const QString& value, RunOptions& options)
{
    options.hasFreeGoal = parseFreeGoal(value, options.freeGoal);
    if (!options.hasFreeGoal)
        return refuse("Error: -minfree needs a size such as 50G or 15%, not '%1'!\n", value);
    return kExitOk;
}

int readFreeToGoal(const QString& value, RunOptions& options)
{
    options.freeToText = value;
    options.hasFreeToGoal = parseFreeGoal(value, options.freeToGoal);
    return options.hasFreeToGoal ? kExitOk : refuse(kFreeToError, value);
}

int readMinAge(const QString& value, RunOptions& options)
{
    options.minAgeText = value;
    return parseMinAge(value, options.minAgeDays) ? kExitOk : refuse(kMinAgeError, value);
}

using ValueReader = int (*)(const QString& value, RunOptions& options);
using SwitchSetter = void (*)(RunOptions& options);

// The tool's own options, matched whole and ignoring case. An option reads a
// value or sets a switch, never both. The root flags are root discovery's,
// matched by their beginning, and may repeat.
struct OptionRule {
    const char* name;
    ValueReader readValue;
    SwitchSetter setSwitch;
    bool repeatable;
};

const OptionRule kOptionRules[] = {
    {"-do", readDaysOld, nullptr, false},
    {"-v", nullptr, [](RunOptions& options) { options.verbose = true; }, false},
    {"-dryrun", nullptr, [](RunOptions& options) { options.dryRun = true; }, false},
    {"-keep", readKeepPattern, nullptr, true},
    {"-log", readLogFile, nullptr, false},
    {"-minfree", readFreeGoal, nullptr, false},
    {"-freeto", readFreeToGoal, nullptr, false},
    {"-check", nullptr, [](RunOptions& options) { options.check = true; }, false},
    {"-minage", readMinAge, nullptr, false},
    {"-prom", readPromFile, nullptr, false},
    {"-age", readAgeBy, nullptr, false},
};

const OptionRule* findRule(const QString& argument)
{
    for (const OptionRule& rule : kOptionRules) {
        if (argument.compare(QLatin1String(rule.name), Qt::CaseInsensitive) == 0)
            return &rule;
    }
    return nullptr;
}

// An option's value is never one of the tool's own options: "-keep -dryrun"
// is a forgotten value, and taking "-dryrun" as the pattern would delete for
// real.
bool isToolOption(const QString& argument)
{
    return findRule(argument) != nullptr || isRootFlag(argument);
}

// A value that begins with another dash than "-" is refused whatever follows:
// "-keep -dryrun" with an en dash would otherwise keep a pattern and delete
// for real.
bool isMissingValue(const QString& value)
{
    return isToolOption(value) || (beginsWithDash(value) && !value.startsWith(QLatin1Char('-')));
}

// -freeto and -check go with -minfree. Goals of one kind are compared here,
// a size and a share once the volume's size is read. A dry run deletes
// nothing already, and a check that said what a dry run would free would
// answer another question.
int checkFreeSpaceOptions(const RunOptions& options)
{
    if (options.hasFreeToGoal && !options.hasFreeGoal)
        return refuse(kFreeToError, options.freeToText);
    if (options.hasFreeToGoal && options.freeToGoal.isPercent == options.freeGoal.isPercent
        && options.freeToGoal.amount < options.freeGoal.amount)
        return refuse("Error: -freeto is below the -minfree goal!\n");
    if (options.check && !options.hasFreeGoal)
        return refuse("Error: -check needs -minfree!\n");
    if (options.check && options.dryRun)
        return refuse("Error: -check and -dryrun do not go together!\n");
    return kExitOk;
}

// Any other argument that begins with "-" is a typo, never the directory.
int readFolder(const QString& argument, RunOptions& options)
{
    if (beginsWithDash(argument))
        return refuse("Error: Unknown option %1!\n", argument);
    if (options.hasDirectory) {
        printText(fillIn("Error: More than one folder given: %1 and %2!\n", options.directory, argument));
        return kExitBadOption;
    }
    options.directory = argument;
    options.hasDirectory = true;
    return kExitOk;
}

// -minage goes with -minfree. The folder as the command line gives it can
// only name a folder, from a drive's or a share's root: a quoting slip or a
// folder that the current folder would complete ends the run before anything
// is touched.
int checkOptions(const RunOptions& options)
{
    if (!options.minAgeText.isEmpty() && !options.hasFreeGoal)
        return refuse(kMinAgeError, options.minAgeText);
    if (!options.hasDirectory) {
        printText(QStringLiteral("Error: no folder given!\n"));
        return kExitBadOption;
    }
    if (!canBeFolderName(options.directory))
        return refuse("Error: '%1' cannot be a folder name!\n", options.directory);
    if (!isFullPath(options.directory))
        return refuse("Error: the folder %1 is not a full path, and a scheduled task's current folder is "
                      "C:\\Windows\\System32!\n",
                      options.directory);
    return kExitOk;
}

}

void printBanner()
{
    printText(QLatin1String(kBannerRule) + QLatin1String(kToolName) + QLatin1String(kVersion) + QLatin1Char('\n')
              + QLatin1String(". ") + QLatin1String(kMakerNotice) + QLatin1Char('\n') + QLatin1String(kBannerRule));
}

QString usageText()
{
    QString text;
    for (const char* line : kUsageLines)
        text += QLatin1String(line);
    return text;
}

void printUsage()
{
    printText(usageText());
}

QStringList optionNames()
{
    QStringList names;
    for (const OptionRule& rule : kOptionRules)
        names.append(QLatin1String(rule.name));
    return names;
}

int readOptions(const QStringList& arguments, RunOptions& options)
{
    QList<const OptionRule*> seen;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const OptionRule* rule = findRule(argument);
        if (rule == nullptr && !isRootFlag(argument)) {
            const int code = readFolder(argument, options);
            if (code != kExitOk)
                return code;
            continue;
        }
        if (rule != nullptr && !rule->repeatable && seen.contains(rule))
            return refuse("Error: %1 given twice!\n", argument);
        seen.append(rule);
        if (rule != nullptr && rule->setSwitch != nullptr) {
            rule->setSwitch(options);
            continue;
        }
        if (i + 1 == arguments.size() || isMissingValue(arguments.at(i + 1)))
            return refuse("Error: %1 needs a value!\n", argument);
        const QString& value = arguments.at(++i);
        // A root flag's value is root discovery's alone.
        if (rule == nullptr)
            continue;
        const int code = rule->readValue(value, options);
        if (code != kExitOk)
            return code;
    }
    const int code = checkFreeSpaceOptions(options);
    return code != kExitOk ? code : checkOptions(options);
}

namespace {

constexpr double kBytesPerMiB = 1024.0 * 1024.0;
constexpr double kMostPercent = 99.0;
// 2^64: a goal of this many bytes or more has no 64-bit value.
constexpr double kFirstOverflowingBytes = 18446744073709551616.0;
// Seconds of this many days still fit a time stamp, whatever the clock says.
constexpr double kMostMinAgeDays = 1e9;

bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// ASCII digits, at most one decimal point between digits.
bool isDecimal(const QString& text)
{
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (text.isEmpty() || point == 0 || point == text.size() - 1)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i != point && !isAsciiDigit(text.at(i)))
            return false;
    }
    return text.count(QLatin1Char('.')) <= 1;
}

double unitBytes(QChar unit)
{
    switch (unit.toUpper().unicode()) {
    case u'M':
        return kBytesPerMiB;
    case u'G':
        return kBytesPerMiB * 1024;
    case u'T':
        return kBytesPerMiB * 1024 * 1024;
    default:
        return 0;
    }
}

}

bool parseFreeGoal(const QString& text, FreeGoal& goal)
{
    if (text.size() < 2 || !isDecimal(text.chopped(1)))
        return false;
    const QChar unit = text.back();
    goal.isPercent = unit == QLatin1Char('%');
    const double perUnit = goal.isPercent ? 1 : unitBytes(unit);
    goal.amount = text.chopped(1).toDouble() * perUnit;
    const bool inRange = goal.isPercent ? goal.amount <= kMostPercent : goal.amount < kFirstOverflowingBytes;
    return perUnit > 0 && goal.amount > 0 && inRange;
}

bool parseMinAge(const QString& text, double& days)
{
    if (!isDecimal(text))
        return false;
    days = text.toDouble();
    return days <= kMostMinAgeDays;
}
