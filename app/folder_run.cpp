#include "app/folder_run.h"

namespace {

constexpr std::uint64_t kGroupSize = 1000;
// Grouping starts above this value, so 1000 itself prints without a blank.
constexpr std::uint64_t kLargestUngrouped = 1000;
// Groups split off below the leading number; what stays in front of them is
// printed whole, however long.
constexpr int kMostGroups = 3;

}

TimeStamp& progressStamp()
{
    static TimeStamp stamp = 0;
    return stamp;
}

QString formatGroupedNumber(std::int64_t value)
{
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    std::uint64_t rest = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);

    QString tail;
    for (int groups = 0; groups < kMostGroups && rest > kLargestUngrouped; ++groups) {
        const QString group = QStringLiteral("%1").arg(rest % kGroupSize, 3, 10, QLatin1Char('0'));
        tail = tail.isEmpty() ? group : QStringLiteral("%1 %2").arg(group, tail);
        rest /= kGroupSize;
    }
    if (tail.isEmpty())
        return QStringLiteral("%1%2").arg(sign, QString::number(rest));
    return QStringLiteral("%1%2 %3").arg(sign, QString::number(rest), tail);
}
