#include "app/metrics.h"

namespace {

const char kPrefix[] = "kxdeleteoldfiles_";
const char kLastSuccess[] = "last_success_timestamp_seconds";
constexpr int kDurationDecimals = 3;
constexpr double kMillisecondsPerSecond = 1000.0;

struct Sample {
    const char* name;
    const char* help;
    QString value;
};

QString sampleLine(const char* name, const QString& folder, const QString& value)
{
    return QLatin1String(kPrefix) + QLatin1String(name) + QLatin1String("{folder=\"") + escapeLabelValue(folder)
        + QLatin1String("\"} ") + value + QLatin1Char('\n');
}

QString metric(const Sample& sample, const QString& folder)
{
    const QString name = QLatin1String(kPrefix) + QLatin1String(sample.name);
    return QLatin1String("# HELP ") + name + QLatin1Char(' ') + QLatin1String(sample.help)
        + QLatin1String("\n# TYPE ") + name + QLatin1String(" gauge\n") + sampleLine(sample.name, folder, sample.value);
}

// The value of the same folder's line in the previous text; empty when none.
QString previousValue(const QString& previousText, const char* name, const QString& folder)
{
    QString head = sampleLine(name, folder, QString());
    head.chop(1);
    for (const QString& line : previousText.split(QLatin1Char('\n'))) {
        if (line.startsWith(head))
            return line.mid(head.size()).trimmed();
    }
    return QString();
}

QString number(std::int64_t value)
{
    return QString::number(value);
}

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
    const QString lastSuccess =
        run.exitCode == 0 ? number(run.endTime) : previousValue(previousText, kLastSuccess, run.folder);
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
        {"errors", "How many error lines the last run reported.", number(totals.errors)},
        {"free_bytes", "Bytes free on the drive at the end of the last run.",
         totals.freeKnown ? number(static_cast<std::int64_t>(totals.freeBytes)) : QString()},
        {"free_goal_bytes", "The -minfree goal of the last run, in bytes.",
         totals.hasGoal ? number(static_cast<std::int64_t>(totals.goalBytes)) : QString()},
        {"free_goal_met", "1 when the last run met its -minfree goal, else 0.",
         totals.hasGoal ? number(totals.goalMet ? 1 : 0) : QString()},
    };
    QString text;
    for (const Sample& sample : samples) {
        if (!sample.value.isEmpty())
            text += metric(sample, run.folder);
    }
    return text;
}
