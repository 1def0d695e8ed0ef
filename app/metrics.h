#pragma once
// The run's figures for Prometheus, in its text format, for the textfile
// collector of the node's exporter.

#include "app/folder_run.h"
#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

struct MetricsRun {
    QString folder;
    // The metrics file's name without its extension: two tasks on one folder
    // write different series.
    QString task;
    TimeStamp endTime = 0;
    std::int64_t durationMilliseconds = 0;
    int exitCode = 0;
    RunTotals totals;
};

// The label that tells tasks apart: kx_temp for ...\kx_temp.prom.
QString metricsTask(const QString& path);

// The exposition format's label value: backslash, quote and line feed escaped.
QString escapeLabelValue(const QString& value);

// The file's text: every metric with its HELP and TYPE lines and one sample
// labelled with the folder and the task, line feeds only, the last line ended
// too. What runs add up is carried over from the previous text's sample of
// the same labels: the time of the last success (this run's when it ended
// with 0), the bytes deleted so far, and the runs in a row that missed the
// -minfree goal.
QString metricsText(const MetricsRun& run, const QString& previousText);

// Replacing the file fails while the exporter reads it without delete
// sharing, which lasts a moment: that is tried again for this long.
constexpr std::int64_t kReplaceRetryMilliseconds = 2000;

// True when a replace that failed with the system's error after this long is
// worth another try.
bool retryMetricsReplace(std::uint32_t error, std::int64_t elapsedMilliseconds);

// Writes the text beside the file, then renames it over the file, so a scrape
// never reads half of it. False, with the error line printed, when it fails.
bool writeMetricsFile(const QString& path, const MetricsRun& run);
