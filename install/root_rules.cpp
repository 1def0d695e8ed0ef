#include "install/root_rules.h"

#include "text/entities.h"
#include "text/path_normalize.h"

const QString kRootSeparator = QStringLiteral("\\");

namespace {

constexpr char kKxRootFlag[] = "-kxRoot";
constexpr char kLoadStatusFlag[] = "-loadstatus";
constexpr bool kDecodeKxRootFlag = true;
constexpr bool kDecodeLoadStatusFlag = false;

bool isFlag(QString argument, const QString& flag, bool decodeArgument)
{
    if (decodeArgument)
        argument = decodeEntities(argument);
    return argument.startsWith(flag, Qt::CaseInsensitive);
}

bool endsWithSeparator(const QString& text)
{
    return text.endsWith(QLatin1Char('\\')) || text.endsWith(QLatin1Char('/'));
}

void appendBackslashIfRoom(FixedWideString250& folder)
{
    if (!folder.endsWithBackslash() && folder.length + 1 <= FixedWideString250::kCapacity) {
        const char16_t backslash = u'\\';
        folder.appendUnits(&backslash, 1);
    }
}

// The entity-decoded value after every argument that begins with flag (ignoring
// case), in command-line order; the last one wins for callers that want one.
// The value is not skipped, so "-kxRoot -kxRoot x" matches twice. The argument
// itself is decoded before the test only when decodeArgument is set.
QStringList flagValues(const QStringList& arguments, const QString& flag, bool decodeArgument)
{
    QStringList values;
    for (qsizetype i = 1; i + 1 < arguments.size(); ++i) {
        if (isFlag(arguments.at(i), flag, decodeArgument))
            values.append(decodeEntities(arguments.at(i + 1)));
    }
    return values;
}

}

QStringList kxRootFlagValues(const QStringList& arguments)
{
    QStringList values = flagValues(arguments, QLatin1String(kKxRootFlag), kDecodeKxRootFlag);
    for (QString& value : values) {
        if (!endsWithSeparator(value))
            value += kRootSeparator;
    }
    return values;
}

QStringList loadStatusFlagValues(const QStringList& arguments)
{
    return flagValues(arguments, QLatin1String(kLoadStatusFlag), kDecodeLoadStatusFlag);
}

bool isRootFlag(const QString& argument)
{
    return isFlag(argument, QLatin1String(kKxRootFlag), kDecodeKxRootFlag)
        || isFlag(argument, QLatin1String(kLoadStatusFlag), kDecodeLoadStatusFlag);
}

QString environmentCandidate(QString value)
{
    value.remove(QLatin1Char('\r'));
    if (!value.isEmpty() && !endsWithSeparator(value))
        value += kRootSeparator;
    return value;
}

QString replaceInternalMarker(QString candidate)
{
    return candidate.replace(QStringLiteral("\\_internal_"), QStringLiteral("\\_"), Qt::CaseSensitive);
}

bool endsWithVersionFolder(const QString& root)
{
    return root.endsWith(QStringLiteral("_KX9"), Qt::CaseInsensitive)
        || root.endsWith(QStringLiteral("_KX9\\"), Qt::CaseInsensitive);
}

FixedWideString250 statusFolderEntry(const QString& value, const FixedWideString250& root)
{
    FixedWideString250 status = toFixedWide250(value);
    // A quoted value that ends in a backslash arrives with a stray quote.
    if (!status.isEmpty() && status.value[status.length - 1] == u'"')
        status.setLength(std::int16_t(status.length - 1));
    appendBackslashIfRoom(status);
    if (!status.startsWithParentReference())
        return status;

    // Relative to the root: the join is cut at 250 before it is normalised.
    FixedWideString250 joined = root;
    joined.append(status);
    FixedWideString wide;
    wide.appendUnits(joined.value, joined.length);
    normalizePathFixed(wide);
    status.clear();
    status.appendUnits(wide.value, wide.length);
    return status;
}

QString relinkFilePath(const QString& root)
{
    return root + QStringLiteral("sub") + kRootSeparator + QStringLiteral("cfg_global") + kRootSeparator
        + QStringLiteral("relink_win.cfg");
}

QString releaseTwin(QString path)
{
    return path.replace(QStringLiteral("_debug"), QStringLiteral("_release"), Qt::CaseSensitive);
}

// "ExeRoot" does not begin with "Root", so testing "Root" first never hides it.
void applyRelinkLine(InstallPaths& paths, const QByteArray& line)
{
    const QString text = QString::fromLatin1(line).trimmed();
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals < 0)
        return;
    const QString value = text.mid(equals + 1).trimmed();
    if (text.startsWith(QStringLiteral("Root"), Qt::CaseInsensitive)) {
        FixedWideString250& root = paths.entries[kRootEntry];
        root = toFixedWide250(value);
        // Nothing after "=" leaves the root empty, like a line of no known form.
        if (!root.isEmpty())
            appendBackslashIfRoom(root);
    } else if (text.startsWith(QStringLiteral("ExeRoot"), Qt::CaseInsensitive)) {
        paths.entries[kExeRootEntry] = toFixedWide250(value);
    }
}
