#pragma once
// Age is measured in whole seconds since 1970-01-01 00:00 UTC; no local time,
// zone or daylight-saving rule enters the age test.

#include <cstdint>

using TimeStamp = std::int64_t;

TimeStamp currentTime();

// A file time is 100-nanosecond ticks since 1601-01-01 UTC, in two words.
TimeStamp fileTimeToSeconds(std::uint32_t low, std::uint32_t high);

// What an entry's age counts from: its last write time, or the newest of that
// and its change time, which a copy, an extraction or an attribute change
// renews while the last write time keeps the source's date.
enum class AgeBy { Write, Newest };

// The time an entry's age counts from.
TimeStamp ageTime(TimeStamp written, TimeStamp changed, AgeBy ageBy);

// True when now > stamp + span; with update set, the stamp then becomes now.
// Without now, the current time is read.
bool hasElapsed(TimeStamp& stamp, std::int64_t span, bool update, const TimeStamp* now = nullptr);
