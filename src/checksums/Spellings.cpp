#include "checksums/Spellings.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace quav::spellings {

namespace {

constexpr qsizetype digestLength = 32;

// Twice what the system takes for a path. What is longer is no entry, and must not cost the time.
constexpr qsizetype longestEntry = 8192;

/// A spelling: the groups "name" and "digest", and "escaped" where a backslash in front of the line
/// says that those in the name protect others and line breaks.
struct Spelling {
    std::optional<ChecksumKind> kind;
    QRegularExpression pattern;
};

QRegularExpression pattern(const char* text) {
    const QString digest = QStringLiteral("(?<digest>[0-9a-f]{%1})").arg(digestLength);
    return QRegularExpression(
        QStringLiteral("^%1$").arg(
            QString::fromLatin1(text)
                .replace(QStringLiteral("DIGEST"), digest)
                .replace(QStringLiteral("NAME"), QStringLiteral("(?<name>.+)"))
                .replace(QStringLiteral("ESCAPED"), QStringLiteral("(?<escaped>\\\\)?"))),
        QRegularExpression::CaseInsensitiveOption);
}

const std::array<Spelling, 6>& table() {
    using enum ChecksumKind;
    // The more particular ones first: a line of shntool has the look of the others, too. Behind a
    // name that may end anywhere comes what cannot begin anywhere, so that no line is searched
    // again for each of its blanks.
    static const std::array all{
        Spelling{St5, pattern(R"(DIGEST[ \t]+\*?\[shntool\][ \t]+NAME)")},
        Spelling{Md5, pattern(R"(ESCAPEDMD5 ?\(NAME\) ?= ?DIGEST)")},
        Spelling{{}, pattern(R"(ESCAPEDDIGEST(?:[ \t]\*|[ \t]+)NAME)")},
        Spelling{Ffp, pattern(R"(NAME:[ \t]*DIGEST)")},
        Spelling{{}, pattern(R"((?<name>.*[^ \t]) *\t[ \t]*DIGEST)")},
        Spelling{{}, pattern(R"(NAME=[ \t]*DIGEST)")},
    };
    return all;
}

/// A name with the backslashes undone that protect others and line breaks.
QString unescaped(const QString& name) {
    QString plain;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool escapes = name[i] == u'\\' && i + 1 < name.size();
        if (!escapes) {
            plain += name[i];
            continue;
        }
        ++i;
        const QChar next = name[i];
        plain += next == u'n' ? QChar(u'\n') : next == u'r' ? QChar(u'\r') : next;
    }
    return plain;
}

bool isHexDigit(QChar character) {
    const char16_t code = character.toLower().unicode();
    return (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'f');
}

/// What no spelling can do without. It is quick to see, and most of a text does not have it.
bool mayHaveDigest(QStringView line) {
    if (line.size() <= digestLength || line.size() > longestEntry) {
        return false;
    }
    const QStringView start = line.front() == u'\\' ? line.sliced(1) : line;
    return isDigest(start.first(digestLength)) || isDigest(line.last(digestLength));
}

} // namespace

std::optional<Spelled> read(const QString& line) {
    if (!mayHaveDigest(line)) {
        return std::nullopt;
    }
    for (const Spelling& spelling : table()) {
        const auto match = spelling.pattern.match(line);
        if (!match.hasMatch()) {
            continue;
        }
        QString name = match.captured(u"name").trimmed();
        const bool isEscaped = !match.captured(u"escaped").isEmpty();
        name = isEscaped ? unescaped(name) : name.replace(u'\\', u'/');
        if (name.isEmpty()) {
            return std::nullopt;
        }
        return Spelled{spelling.kind, name, match.captured(u"digest").toLower()};
    }
    return std::nullopt;
}

std::optional<ChecksumKind> kindNamedIn(const QString& words) {
    static const QRegularExpression names(
        QStringLiteral("(?<![a-z0-9])(?:(?<md5>md5(?:sums?)?)|(?<st5>st5|shntool)|ffp|"
                       "fingerprints?)(?![a-z0-9])"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = names.match(words);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const bool isMd5 = !match.captured(u"md5").isEmpty();
    const bool isSt5 = !match.captured(u"st5").isEmpty();
    return isMd5 ? ChecksumKind::Md5 : isSt5 ? ChecksumKind::St5 : ChecksumKind::Ffp;
}

bool isDigest(QStringView text) {
    return text.size() == digestLength && std::all_of(text.begin(), text.end(), isHexDigit);
}

bool hasPartOfDigest(QStringView line) {
    constexpr int half = digestLength / 2;
    int inARow = 0;
    return std::any_of(line.begin(), line.end(), [&](QChar character) {
        inARow = isHexDigit(character) ? inARow + 1 : 0;
        return inARow == half;
    });
}

} // namespace quav::spellings
