#include "checksums/ChecksumList.h"

#include "platform/PathNames.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringList>
#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace quav::checksumlist {

namespace {

// Room for the digests of several hundred thousand files. What is larger is something else by
// mistake, and must not fill the memory.
constexpr std::uint64_t largestList = std::uint64_t(64) * 1024 * 1024;
constexpr qint64 mostLines = 500000;

const QString md5Separator = QStringLiteral(" *");
const QString st5Separator = QStringLiteral("  [shntool]  ");

bool endsLine(QChar character) {
    constexpr char16_t nextLine = 0x85;
    const char16_t code = character.unicode();
    return (code >= u'\n' && code <= u'\r') || code == nextLine || code == QChar::LineSeparator ||
           code == QChar::ParagraphSeparator;
}

/// Calls `take` with every line; between CR and LF there is an empty one.
template <typename Take>
void eachLine(QStringView text, Take take) {
    while (true) {
        const auto end = std::find_if(text.begin(), text.end(), endsLine);
        take(QStringView(text.begin(), end));
        if (end == text.end()) {
            return;
        }
        text = QStringView(end + 1, text.end());
    }
}

QString withoutBlanks(QString text) {
    const auto isBlank = [](QChar character) { return character == u' '; };
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    const auto first = std::find_if_not(text.cbegin(), text.cend(), isBlank);
    return text.mid(first - text.cbegin());
}

std::optional<Entry> strictEntry(ChecksumKind kind, const QString& line) {
    switch (kind) {
    case ChecksumKind::Md5:
        if (line.contains(md5Separator)) {
            return Entry{line.section(md5Separator, 1, 1).trimmed(),
                         line.section(md5Separator, 0, 0).trimmed()};
        }
        break;
    case ChecksumKind::St5:
        if (line.contains(st5Separator)) {
            return Entry{line.section(st5Separator, 1, 1), line.section(st5Separator, 0, 0)};
        }
        break;
    case ChecksumKind::Ffp:
        if (line.contains(u':')) {
            return Entry{withoutBlanks(line.section(u':', 0, 0)),
                         withoutBlanks(line.section(u':', 1, 1))};
        }
        break;
    }
    return std::nullopt;
}

bool isSkipped(ChecksumKind kind, QStringView line, Reading reading) {
    // The order of trimming and testing is not the same for all kinds.
    const QStringView seen =
        kind == ChecksumKind::Md5 && reading == Reading::Strict ? line : line.trimmed();
    const bool takesHash = kind == ChecksumKind::Md5 || reading == Reading::Tolerant;
    return seen.isEmpty() || seen.front() == u';' || (takesHash && seen.front() == u'#');
}

/// The patterns of the world's spellings, each with the groups "name" and "digest".
struct Spelling {
    ChecksumKind kind;
    QRegularExpression pattern;
};

const std::array<Spelling, 4>& spellings() {
    const auto pattern = [](const QString& text) {
        return QRegularExpression(text, QRegularExpression::CaseInsensitiveOption);
    };
    // The more particular ones first: a line of shntool has the look of the others, too.
    static const std::array all{
        Spelling{ChecksumKind::St5,
                 pattern(QStringLiteral("^(?<digest>[0-9a-f]{32})[ \\t]+\\*?\\[shntool\\][ \\t]+"
                                        "(?<name>.+)$"))},
        Spelling{ChecksumKind::Md5,
                 pattern(QStringLiteral("^\\\\?(?<digest>[0-9a-f]{32})(?: \\*|  |[ \\t]+)"
                                        "(?<name>.+)$"))},
        Spelling{ChecksumKind::Md5, pattern(QStringLiteral("^\\\\?MD5 ?\\((?<name>.+)\\) ?= ?"
                                                           "(?<digest>[0-9a-f]{32})$"))},
        Spelling{ChecksumKind::Ffp,
                 pattern(QStringLiteral("^(?<name>.+):[ \\t]*(?<digest>[0-9a-f]{32})$"))},
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

std::optional<Entry> tolerantEntry(ChecksumKind kind, const QString& line) {
    for (const Spelling& spelling : spellings()) {
        const auto match = spelling.pattern.match(line);
        if (!match.hasMatch()) {
            continue;
        }
        if (spelling.kind != kind) {
            return std::nullopt;
        }
        QString name = match.captured(u"name").trimmed();
        const bool isEscaped = line.startsWith(u'\\');
        name = isEscaped ? unescaped(name) : name.replace(u'\\', u'/');
        return Entry{name, match.captured(u"digest").toLower()};
    }
    return std::nullopt;
}

} // namespace

tl::expected<QByteArray, QString> contentsOf(const QString& path) {
    const auto refuse = [&](const QString& reason) {
        return tl::make_unexpected(
            QCoreApplication::translate("ChecksumList", "“%1” could not be read: %2")
                .arg(path, reason));
    };
    auto file = RegularFile::open(path);
    if (!file) {
        return refuse(checksumfiles::reasonOf(file.error() == EISDIR ? EINVAL : file.error()));
    }
    if (file->size() > largestList) {
        return refuse(QCoreApplication::translate(
            "ChecksumList", "it is larger than any list of checksums, 64 MiB"));
    }
    const auto bytes = file->read(largestList);
    if (!bytes) {
        return refuse(checksumfiles::reasonOf(bytes.error()));
    }
    if (std::count_if(bytes->begin(), bytes->end(),
                      [](char byte) { return byte >= '\n' && byte <= '\r'; }) > mostLines) {
        return refuse(QCoreApplication::translate(
            "ChecksumList", "it has more lines than any list of checksums, 500,000"));
    }
    return *bytes;
}

bool isUtf8(const QByteArray& bytes) {
    return QUtf8StringView(bytes).isValidUtf8();
}

QString decoded(const QByteArray& bytes, Reading reading) {
    if (reading == Reading::Tolerant) {
        if (const auto marked = QStringDecoder::encodingForData(bytes)) {
            return QStringDecoder(*marked).decode(bytes);
        }
    }
    if (isUtf8(bytes)) {
        return QString::fromUtf8(bytes);
    }
    return reading == Reading::Tolerant ? QString::fromLatin1(bytes) : QString();
}

List read(ChecksumKind kind, const QString& text, Reading reading) {
    List list;
    eachLine(text, [&](QStringView line) {
        ++list.allLines;
        if (isSkipped(kind, line, reading)) {
            return;
        }
        Line kept{line.trimmed().toString(), {}, {}};
        kept.strict = strictEntry(kind, kept.text);
        if (reading == Reading::Tolerant) {
            kept.entry = tolerantEntry(kind, kept.text);
        }
        if (!kept.entry) {
            kept.entry = kept.strict;
        }
        list.lines.push_back(std::move(kept));
    });
    return list;
}

bool isReadBack(ChecksumKind kind, const QString& name) {
    const QString digest(32, u'0');
    QString text;
    switch (kind) {
    case ChecksumKind::Md5:
        text = digest + md5Separator + name;
        break;
    case ChecksumKind::St5:
        text = digest + st5Separator + name;
        break;
    case ChecksumKind::Ffp:
        text = name + u':' + digest;
        break;
    }
    const List list = read(kind, text, Reading::Strict);
    return list.lines.size() == 1 && list.lines.front().strict &&
           list.lines.front().strict->name == name;
}

QString notReadBack(const QString& file) {
    return QCoreApplication::translate("ChecksumList",
                                       "“%1” cannot be found again by its name in the list")
        .arg(file);
}

std::optional<ChecksumKind> kindByName(const QString& path) {
    const QString word = formatWord(path);
    if (word == u"MD5") {
        return ChecksumKind::Md5;
    }
    if (word == u"ST5") {
        return ChecksumKind::St5;
    }
    const bool isFfpText = word == u"TXT" && formatWord(baseName(path)) == u"FFP";
    return word == u"FFP" || isFfpText ? std::optional(ChecksumKind::Ffp) : std::nullopt;
}

std::optional<ChecksumKind> kindByContent(const QString& text) {
    std::optional<ChecksumKind> kind;
    eachLine(text, [&](QStringView line) {
        const QStringView trimmed = line.trimmed();
        for (const Spelling& spelling : spellings()) {
            if (kind) {
                return;
            }
            if (spelling.pattern.match(trimmed).hasMatch()) {
                kind = spelling.kind;
            }
        }
    });
    return kind;
}

std::optional<ChecksumKind> kindOf(const QString& path, Reading reading) {
    const auto byName = kindByName(path);
    if (reading == Reading::Strict || !(byName || formatWord(path) == u"TXT")) {
        return byName;
    }
    constexpr std::uint64_t enough = std::uint64_t(64) * 1024;
    const auto bytes = RegularFile::beginningOf(path, enough).value_or(QByteArray());
    const auto byContent = kindByContent(decoded(bytes, reading));
    return byContent ? byContent : byName;
}

} // namespace quav::checksumlist
