#include "engine/FailureReason.h"

#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringView>

#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <unistd.h>

namespace quav {

namespace {

constexpr int signalledBase = 128;

// Less than this is no room: tools hand on what they write in blocks, and one of them found none.
constexpr std::uint64_t leastRoom = 65536;

// What a tool must have written before it can be said to have filled a disk, and what the disk may
// have needed beyond that for its own lists: so much, and one part in so many.
constexpr std::uint64_t leastFill = 16384;
constexpr std::uint64_t overhead = 64;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(FailureReason)
};

/// Where the line around a place begins and ends.
QStringView lineAround(QStringView text, qsizetype at) {
    const qsizetype before = at > 0 ? text.lastIndexOf(u'\n', at - 1) : -1;
    const qsizetype behind = text.indexOf(u'\n', at);
    return text.sliced(before + 1, (behind < 0 ? text.size() : behind) - before - 1);
}

/// The last line with anything in it; begins behind the text when there is none.
QStringView lastLine(QStringView text) {
    const QStringView kept = text.trimmed();
    return kept.isEmpty() ? QStringView() : lineAround(kept, kept.size() - 1);
}

/// The last line with a word that does not only end a longer one.
QStringView lineWith(QStringView text, QStringView word) {
    qsizetype at = text.lastIndexOf(word);
    while (at > 0 && (text[at - 1].isLetter() || text[at - 1] == u'_')) {
        at = text.lastIndexOf(word, at - 1);
    }
    return at < 0 ? QStringView() : lineAround(text, at);
}

/// What the system says of a disk that takes no more, if the text says it as well.
QString fullDiskIn(QStringView text) {
    for (const int error : {ENOSPC, EDQUOT}) {
        QString words = qt_error_string(error);
        if (text.contains(words)) {
            return words;
        }
    }
    return {};
}

/// The line that says best what went wrong: the last about a full disk, else about an error, else
/// the last one; with the line before it when that one leads up to it.
QString bestLine(QStringView text, const QString& fullDisk) {
    QStringView line = fullDisk.isEmpty() ? QStringView() : lineWith(text, fullDisk);
    for (const QStringView found : {lineWith(text, u"ERROR"), lastLine(text)}) {
        line = line.isEmpty() ? found : line;
    }
    const QStringView before = lastLine(text.first(line.isEmpty() ? 0 : line.data() - text.data()));
    constexpr qsizetype most = 1000; // longer than any that is meant to be read
    const QString best = line.trimmed().first(std::min(line.trimmed().size(), most)).toString();
    return before.endsWith(u':') ? QStringLiteral("%1 %2").arg(before.trimmed(), best) : best;
}

/// Bytes that can be written to the disk of an output.
std::optional<std::uint64_t> roomFor(const QString& output) {
    struct statvfs disk {};
    if (output.isEmpty() || statvfs(QFile::encodeName(folderOf(output)).constData(), &disk) != 0) {
        return std::nullopt;
    }
    return (geteuid() == 0 ? disk.f_bfree : disk.f_bavail) * disk.f_frsize;
}

bool saysNothing(const QString& line) {
    return line.isEmpty() || (line.startsWith(u'/') && !line.contains(u": "));
}

QString failedSilently(const FailureFacts& facts, const QString& line) {
    if (facts.tool.isEmpty() || facts.exitStatus == 0) {
        return line.isEmpty() ? Words::tr("It failed, and nothing says why")
                              : Words::tr("It failed: %1").arg(line);
    }
    const QString status = QString::number(facts.exitStatus);
    return line.isEmpty()
               ? Words::tr("%1 failed with exit status %2 and said nothing").arg(facts.tool, status)
               : Words::tr("%1 failed with exit status %2: %3").arg(facts.tool, status, line);
}

} // namespace

bool wasKilled(int exitStatus) {
    return exitStatus > signalledBase && sigdescr_np(exitStatus - signalledBase) != nullptr;
}

QString failureReason(const FailureFacts& facts, const QString& said) {
    if (facts.stalledFor) {
        return endedForStalling(facts.tool, *facts.stalledFor);
    }
    if (wasKilled(facts.exitStatus)) {
        const int number = facts.exitStatus - signalledBase;
        return Words::tr("%1 was ended by signal %2 (%3)")
            .arg(facts.tool, QString::number(number), QString::fromLatin1(sigdescr_np(number)));
    }
    if (facts.exitStatus == 0 && !facts.own.isEmpty()) {
        return facts.own;
    }
    const QString toldFull = fullDiskIn(said);
    const QString line = bestLine(said, toldFull);
    if (toldFull.isEmpty() && facts.outputDiskFull) {
        const QString full = qt_error_string(ENOSPC);
        return line.isEmpty() ? full : QStringLiteral("%1: %2").arg(full, line);
    }
    return saysNothing(line) ? failedSilently(facts, line) : line;
}

QString endedForStalling(const QString& tool, std::chrono::milliseconds quiet) {
    return Words::tr("%1 neither read, wrote nor printed anything for %2 and was ended")
        .arg(tool, spanInWords(quiet));
}

QString spanInWords(std::chrono::milliseconds span) {
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(span);
    if (minutes.count() > 0) {
        return Words::tr("%1 min").arg(minutes.count());
    }
    return Words::tr("%1 s").arg(std::chrono::round<std::chrono::seconds>(span).count());
}

bool isDiskFullFor(const QString& output, std::uint64_t bytesWritten) {
    const auto room = roomFor(output);
    if (!room) {
        return false;
    }
    const bool wasFilled = bytesWritten >= leastFill && !QFileInfo::exists(output) &&
                           *room <= bytesWritten + leastFill + bytesWritten / overhead;
    return *room < leastRoom || wasFilled;
}

bool isDiskFullFor(const QString& output, std::uint64_t inputBytes, const QString& said) {
    constexpr std::uint64_t mostGrowth = 16; // more than any music grows when it is decoded
    const bool blamesWriting = said.contains(u"An error occurred while writing") ||
                               said.contains(u"FLAC__STREAM_DECODER_ABORTED");
    const auto room = blamesWriting ? roomFor(output) : std::nullopt;
    return room && *room < inputBytes * mostGrowth;
}

} // namespace quav
