#pragma once
// The run's figures for Prometheus, in its text format, for the textfile
// collector of the node's exporter.

#include "app/folder_run.h"
#include "sweep/file_time.h"

#include <QString>

struct MetricsRun {
    QString folder;
    TimeStamp endTime = 0;
    std::int64_t durationMilliseconds = 0;
    int exitCode = 0;
    RunTotals totals;
};

// The exposition format's label value: backslash, quote and line feed escaped.
QString escapeLabelValue(const QString& value);

// The file's text: every metric a gauge with its HELP and TYPE lines and one
// sample labelled with the folder, line feeds only, the last line ended too.
// The time of the last success is this run's when it ended with 0, else the
// one the previous text holds for the same folder, else left out.
QString metricsText(const MetricsRun& run, const QString& previousText);

// Writes the text beside the file, then renames it over the file, so a scrape
// never reads half of it. False, with the error line printed, when it fails.
bool writeMetricsFile(const QString& path, const MetricsRun& run);
