// A -v log too long to hold comes back from its temporary file whole and in
// its order, a character outside the Basic Multilingual Plane on the border
// between two printed parts included.

#include "sweep/log_spill_win.h"
#include "text/output.h"

#include <gtest/gtest.h>

namespace {

QByteArray logged;

TEST(LogSpill, SpilledTextIsPrintedWholeInItsOrder)
{
    startLog([](const QByteArray& bytes) {
        logged += bytes;
        return true;
    });
    const QString border = QString(1024 * 1024 - 1, QLatin1Char('a')) + QString::fromUtf8("\xf0\x9f\x8e\x9e");
    LogSpill spill;
    QString log = border;
    spillLog(spill, log);
    EXPECT_TRUE(log.isEmpty() && !spill.failed);
    log = QStringLiteral("b\n");
    spillLog(spill, log);
    log = QStringLiteral("held\n");
    logged.clear();
    printSpilled(spill);
    printText(log);
    EXPECT_TRUE(logged == logBytes(border + QStringLiteral("b\nheld\n")));
}

}
