#include "app/startup_check.h"

#include "install/root_rules.h"

namespace {

const char kRootFailureTemplate[] =
    "Unable to get KX Root path; This executable was not started from a KX directory.\n\n"
    " (Tried: '%1', '%2')\n%3";

}

// Each arg() fills the lowest placeholder left in the text at that moment, so a
// "%2" inside the program name is filled by the next call; that is kept.
QString rootFailureMessage(const QStringList& arguments, const QString& rootLog)
{
    const QStringList flagValues = kxRootFlagValues(arguments);
    const QString flagValue = flagValues.isEmpty() ? QString() : flagValues.last();
    const QString program = arguments.isEmpty() ? QString() : arguments.first();
    const QLatin1Char blank(' ');
    return QString::fromLatin1(kRootFailureTemplate)
        .arg(program, 0, blank)
        .arg(flagValue, 0, blank)
        .arg(rootLog, 0, blank);
}
