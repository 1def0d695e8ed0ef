#include "sweep/keep_pattern.h"

#include <QList>

namespace {

constexpr char32_t kAnyRun = U'*';
constexpr char32_t kAnyOne = U'?';

// Whole code points, so "?" stands for a character outside the BMP too, each
// folded as QString's case-insensitive compare folds it. Names are composed
// first: a Mac writes "e" and a combining accent where Windows writes "é".
QList<uint> foldedCodePoints(const QString& text)
{
    QList<uint> codePoints = text.normalized(QString::NormalizationForm_C).toUcs4();
    for (uint& codePoint : codePoints)
        codePoint = QChar::toCaseFolded(char32_t(codePoint));
    return codePoints;
}

}

bool isKeepPattern(const QString& pattern)
{
    return !pattern.isEmpty() && !pattern.contains(QLatin1Char('\\')) && !pattern.contains(QLatin1Char('/'));
}

// Only the latest "*" is ever retried, one character further each time: what
// an earlier one could take, the latest can take as well. So the work stays
// within the name's length times the pattern's, however many stars it holds.
bool matchesNamePattern(const QString& name, const QString& pattern)
{
    const QList<uint> text = foldedCodePoints(name);
    const QList<uint> wanted = foldedCodePoints(pattern);
    qsizetype t = 0;
    qsizetype w = 0;
    qsizetype starAt = -1;
    qsizetype starText = 0;
    while (t < text.size()) {
        if (w < wanted.size() && wanted[w] == kAnyRun) {
            starAt = w++;
            starText = t;
        } else if (w < wanted.size() && (wanted[w] == kAnyOne || wanted[w] == text[t])) {
            ++w;
            ++t;
        } else if (starAt >= 0) {
            w = starAt + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (w < wanted.size() && wanted[w] == kAnyRun)
        ++w;
    return w == wanted.size();
}

const QString* matchingKeepPattern(const QStringList& patterns, const QString& name)
{
    for (const QString& pattern : patterns) {
        if (matchesNamePattern(name, pattern))
            return &pattern;
    }
    return nullptr;
}
