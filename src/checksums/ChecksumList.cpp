#include "checksums/ChecksumList.h"

#include "checksums/Spellings.h"
#include "platform/PathNames.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
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

bool isSkipped(ChecksumKind kind, QStringView line) {
    // The order of trimming and testing is not the same for all kinds.
    const bool isMd5 = kind == ChecksumKind::Md5;
    const QStringView seen = isMd5 ? line : line.trimmed();
    return seen.isEmpty() || seen.front() == u';' || (isMd5 && seen.front() == u'#');
}

/// Goes through a text from top to bottom and knows of each entry which kind it is.
class Sections {
public:
    explicit Sections(const Kinds& kinds) : plain_(kinds.plain), isNamed_(kinds.isNamed) {}

    std::optional<KindAndEntry> entryIn(const QString& line) {
        if (line.startsWith(u';')) {
            heed(line);
            return std::nullopt;
        }
        const auto spelled = spellings::read(line);
        if (!spelled) {
            heed(line);
            return std::nullopt;
        }
        return KindAndEntry{spelled->kind.value_or(plain_), {spelled->name, spelled->digest}};
    }

private:
    void heed(const QString& heading) {
        if (!isNamed_) {
            plain_ = spellings::kindNamedIn(heading).value_or(plain_);
        }
    }

    ChecksumKind plain_;
    bool isNamed_;
};

List readStrictly(ChecksumKind kind, const QString& text) {
    List list;
    eachLine(text, [&](QStringView line) {
        ++list.allLines;
        if (!isSkipped(kind, line)) {
            QString trimmed = line.trimmed().toString();
            const auto entry = strictEntry(kind, trimmed);
            list.lines.push_back({std::move(trimmed), entry, entry, {}});
        }
    });
    return list;
}

bool isComment(QStringView line) {
    return line.front() == u';' || line.front() == u'#';
}

/// Whether a line in which no spelling finds an entry is to be told of.
bool isBrokenEntry(const QString& line, const Kinds& kinds) {
    return kinds.isNamed || spellings::hasPartOfDigest(line);
}

List readTolerantly(ChecksumKind kind, const QString& text, const Kinds& kinds) {
    List list;
    Sections sections(kinds);
    const bool isFirst = kinds.all.empty() || kinds.all.front() == kind;
    eachLine(text, [&](QStringView line) {
        ++list.allLines;
        Line kept{line.trimmed().toString(), {}, {}, {}};
        if (kept.text.isEmpty()) {
            return;
        }
        kept.strict = strictEntry(kind, kept.text);
        const auto found = sections.entryIn(kept.text);
        const auto isOf = [&](ChecksumKind other) { return found && found->kind == other; };
        if (isOf(kind)) {
            kept.entry = found->entry;
        } else if (!isFirst || std::any_of(kinds.all.begin(), kinds.all.end(), isOf) ||
                   (!found && isComment(kept.text))) {
            return; // another task's, or nobody's
        } else if (!found && kept.strict && spellings::isDigest(kept.strict->digest)) {
            kept.entry = kept.strict;
        } else if (!found && !isBrokenEntry(kept.text, kinds)) {
            ++list.passedOver;
            return;
        }
        list.lines.push_back(std::move(kept));
    });
    return list;
}

// The upper half of Windows-1252 where it differs from Latin 1; zeros where it has nothing.
constexpr std::array<char16_t, 32> windowsCharacters{
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

QString fromWindows1252(const QByteArray& bytes) {
    constexpr char16_t first = 0x80;
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text) {
        const char16_t code = character.unicode();
        if (code >= first && code < first + windowsCharacters.size()) {
            const char16_t meant = windowsCharacters[size_t(code - first)];
            character = meant != 0 ? meant : code;
        }
    }
    return text;
}

/// Names without an extension that lists have by custom: "MD5SUMS".
bool isNameOfList(const QString& path) {
    return pathExtension(path).isEmpty() && spellings::kindNamedIn(lastPathComponent(path));
}

} // namespace

namespace {

bool hasTooManyLines(const QByteArray& bytes) {
    if (bytes.size() <= mostLines) {
        return false;
    }
    const QString text = decoded(bytes, Reading::Tolerant);
    return std::count_if(text.begin(), text.end(), endsLine) > mostLines;
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
    if (hasTooManyLines(*bytes)) {
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
    return reading == Reading::Tolerant ? fromWindows1252(bytes) : QString();
}

List read(ChecksumKind kind, const QString& text, Reading reading, const Kinds& kinds) {
    return reading == Reading::Strict ? readStrictly(kind, text)
                                      : readTolerantly(kind, text, kinds);
}

std::optional<KindAndEntry> otherReading(ChecksumKind kind, const QString& line) {
    return Sections({kind, true, {}}).entryIn(line);
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
    const List list = readStrictly(kind, text);
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

Kinds kindsIn(const QString& text, const QString& path) {
    const auto byName = kindByName(path);
    const auto bySpeakingName = spellings::kindNamedIn(lastPathComponent(path));
    Kinds kinds{
        byName ? *byName : bySpeakingName.value_or(ChecksumKind::Md5), byName.has_value(), {}};
    Sections sections(kinds);
    eachLine(text, [&](QStringView line) {
        const auto found = sections.entryIn(line.trimmed().toString());
        if (found &&
            std::find(kinds.all.begin(), kinds.all.end(), found->kind) == kinds.all.end()) {
            kinds.all.push_back(found->kind);
        }
    });
    if (byName && kinds.all.empty()) {
        kinds.all.push_back(*byName);
    }
    return kinds;
}

Kinds kindsOf(const QString& path, Reading reading) {
    const auto byName = kindByName(path);
    const bool mayBeList = byName || formatWord(path) == u"TXT" || isNameOfList(path);
    if (reading == Reading::Tolerant && mayBeList) {
        constexpr std::uint64_t enough = std::uint64_t(1024) * 1024;
        const auto bytes = RegularFile::beginningOf(path, enough).value_or(QByteArray());
        return kindsIn(decoded(bytes, reading), path);
    }
    return byName ? Kinds{*byName, true, {*byName}} : Kinds{};
}

std::optional<ChecksumKind> kindOf(const QString& path, Reading reading) {
    const Kinds kinds = kindsOf(path, reading);
    return kinds.all.empty() ? std::nullopt : std::optional(kinds.all.front());
}

} // namespace quav::checksumlist
