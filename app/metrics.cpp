#include "app/metrics.h"

#include "sweep/listing_rules.h"

#include <algorithm>

namespace {

const char kPrefix[] = "kxdeleteoldfiles_";
const char kLastSuccess[] = "last_success_timestamp_seconds";
const char kDeletedBytesTotal[] = "deleted_bytes_total";
const char kGoalMissedRuns[] = "free_goal_missed_runs";
constexpr int kDurationDecimals = 3;
constexpr double kMillisecondsPerSecond = 1000.0;

struct Sample {
    const char* name;
    const char* help;
    QString value;
    const char* type = "gauge";
};

struct Labels {
    const QString& folder;
    const QString& task;
};

QString sampleLine(const char* name, const Labels& labels, const QString& value)
{
    return QLatin1String(kPrefix) + QLatin1String(name) + QLatin1String("{folder=\"")
        + escapeLabelValue(labels.folder) + QLatin1String("\",task=\"") + escapeLabelValue(labels.task)
        + QLatin1String("\"} ") + value + QLatin1Char('\n');
}

QString metric(const Sample& sample, const Labels& labels)
{
    const QString name = QLatin1String(kPrefix) + QLatin1String(sample.name);
    return QLatin1String("# HELP ") + name + QLatin1Char(' ') + QLatin1String(sample.help)
        + QLatin1String("\n# TYPE ") + name + QLatin1Char(' ') + QLatin1String(sample.type) + QLatin1Char('\n')
        + sampleLine(sample.name, labels, sample.value);
}

// The value of the line with the same labels in the previous text; empty when
// none.
QString previousValue(const QString& previousText, const char* name, const Labels& labels)
{
    QString head = sampleLine(name, labels, QString());
    head.chop(1);
    for (const QString& line : previousText.split(QLatin1Char('\n'))) {
        if (line.startsWith(head))
            return line.mid(head.size()).trimmed();
    }
    return QString();
}

// A count carried over from the previous text, 0 when it holds none.
std::int64_t previousCount(const QString& previousText, const char* name, const Labels& labels)
{
    return previousValue(previousText, name, labels).toLongLong();
}

QString number(std::int64_t value)
{
    return QString::number(value);
}

QString goalMissedRuns(const RunTotals& totals, const QString& previousText, const Labels& labels)
{
    if (!totals.hasGoal)
        return QString();
    return number(totals.goalMet ? 0 : previousCount(previousText, kGoalMissedRuns, labels) + 1);
}

}

QString metricsTask(const QString& path)
{
    const qsizetype slash = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/')));
    const QString name = path.mid(slash + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? name : name.left(dot);
}

QString escapeLabelValue(const QString& value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    escaped.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return escaped;
}

// The HELP texts never change between versions: several tasks' files are
// merged by the exporter, and must not disagree.
QString metricsText(const MetricsRun& run, const QString& previousText)
{
    const RunTotals& totals = run.totals;
    const Labels labels{run.folder, run.task};
    const QString lastSuccess =
        run.exitCode == 0 ? number(run.endTime) : previousValue(previousText, kLastSuccess, labels);
    const Sample samples[] = {
        {"last_run_timestamp_seconds", "When the last run ended, in seconds since 1970.", number(run.endTime)},
        {kLastSuccess, "When the last run that ended with exit code 0 ended, in seconds since 1970.", lastSuccess},
        {"run_duration_seconds", "How long the last run took, in seconds.",
         QString::number(static_cast<double>(run.durationMilliseconds) / kMillisecondsPerSecond, 'f',
                         kDurationDecimals)},
        {"exit_code", "The exit code of the last run.", number(run.exitCode)},
        {"folders", "How many folders the last run cleaned.", number(totals.folders)},
        {"deleted_files", "How many files the last run deleted.", number(totals.deletedFiles)},
        {"deleted_bytes", "The sizes of the files the last run deleted, in bytes.", number(totals.deletedBytes)},
        {kDeletedBytesTotal, "The sizes of the files deleted by the runs that wrote this file, in bytes.",
         number(previousCount(previousText, kDeletedBytesTotal, labels) + totals.deletedBytes), "counter"},
        {"errors", "How many error lines the last run reported.", number(totals.errors)},
        {"free_bytes", "Bytes free on the drive at the end of the last run.",
         totals.freeKnown ? number(static_cast<std::int64_t>(totals.freeBytes)) : QString()},
        {"free_goal_bytes", "The -minfree goal of the last run, in bytes.",
         totals.hasGoal && totals.goalBytes > 0 ? number(static_cast<std::int64_t>(totals.goalBytes)) : QString()},
        {"free_goal_met", "1 when the last run met its -minfree goal, else 0.",
         totals.hasGoal ? number(totals.goalMet ? 1 : 0) : QString()},
        {kGoalMissedRuns, "How many runs in a row, the last one included, missed the -minfree goal.",
         goalMissedRuns(totals, previousText, labels)},
    };
    QString text;
    for (const Sample& sample : samples) {
        if (!sample.value.isEmpty())
            text += metric(sample, labels);
    }
    return text;
}

bool retryMetricsReplace(std::uint32_t error, std::int64_t elapsedMilliseconds)
{
    const bool heldByReader = error == kErrorSharingViolation || error == kErrorAccessDenied;
    return heldByReader && elapsedMilliseconds < kReplaceRetryMilliseconds;
}
