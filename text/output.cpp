#include "text/output.h"

#include "text/platform_printf.h"

namespace {

struct Log {
    LogWriter writer = nullptr;
    bool failed = false;
    // What was printed before the log opened, until it is known that none
    // will.
    QString before;
    bool keeping = true;
};

Log& theLog()
{
    static Log log;
    return log;
}

void writeToLog(Log& log, const QString& text)
{
    if (log.failed)
        return;
    log.failed = !log.writer(logBytes(text));
}

}

void printText(const QString& text)
{
    platformPrintf("%s", consoleBytes(text).constData());
    Log& log = theLog();
    if (log.writer != nullptr)
        writeToLog(log, text);
    else if (log.keeping)
        log.before += text;
}

void forgoLog()
{
    Log& log = theLog();
    log.before.clear();
    log.before.squeeze();
    log.keeping = false;
}

void startLog(LogWriter writer)
{
    Log& log = theLog();
    log.writer = writer;
    writeToLog(log, log.before);
    log.before.clear();
}

bool logWriteFailed()
{
    return theLog().failed;
}

QByteArray consoleBytes(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        shown.append(text.at(i).isSurrogate() ? QLatin1Char('?') : text.at(i));
    }
    return shown.toLatin1();
}

QByteArray logBytes(const QString& text)
{
    QString lines = text;
    lines.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return utf8Bytes(lines);
}

QByteArray utf8Bytes(const QString& text)
{
    QString whole;
    whole.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            whole.append(unit).append(text.at(++i));
            continue;
        }
        whole.append(unit.isSurrogate() ? QChar(QChar::ReplacementCharacter) : unit);
    }
    return whole.toUtf8();
}

QString fillIn(const char* format, const QString& first)
{
    return QString::fromLatin1(format).arg(first);
}

QString fillIn(const char* format, const QString& first, const QString& second)
{
    return QString::fromLatin1(format).arg(first, second);
}
