#include "engine/OutputClaim.h"

#include "engine/Util.h"
#include "platform/FileIdentity.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quav {

namespace {

constexpr qsizetype mostText = 16384;
constexpr qint64 signInterval = 1000;

/// What was written to an output so long after the last sign of life, in milliseconds, is somebody
/// else's work: a file that the user has put there.
constexpr qint64 graceTime = 60000;

const QString prefix = QStringLiteral(".quav-");
const QString claimSuffix = QStringLiteral(".claim");
const QString asideSuffix = QStringLiteral(".aside");

/// Not made from the output's name, which may be as long as names can be.
QString hiddenPath(const QString& output, const QString& suffix) {
    const QByteArray digest = QCryptographicHash::hash(QFile::encodeName(lastPathComponent(output)),
                                                       QCryptographicHash::Sha1);
    constexpr qsizetype digits = 16;
    return joinPath(folderOf(output),
                    prefix + QString::fromLatin1(digest.toHex().left(digits)) + suffix);
}

bool isAsideOf(const QString& output, const QString& path) {
    return path.startsWith(hiddenPath(output, {})) && path.endsWith(asideSuffix);
}

QByteArray word(OutputClaim::State state) {
    switch (state) {
    case OutputClaim::State::Making:
        return "making";
    case OutputClaim::State::Replacing:
        return "replacing";
    case OutputClaim::State::Whole:
        return "whole";
    case OutputClaim::State::Untouched:
        break;
    }
    return "untouched";
}

/// The text of a claim, as far as somebody else has use for it.
struct Record {
    QByteArray process;
    QString program;
    QString output; ///< a path, like the next one
    QString aside;
    QString leftover;
    QByteArray state;

    /// Whether it was written beside the output that it names: nobody can have anything else
    /// removed by putting a claim there.
    bool fits(const QString& claim) const {
        return !output.isEmpty() && hiddenPath(output, claimSuffix) == claim &&
               (aside.isEmpty() || isAsideOf(output, aside)) &&
               (leftover.isEmpty() || leftover.startsWith(output + u'.') ||
                Util::isTempFileName(leftover));
    }

    static Record read(int lock, const QString& folder) {
        QByteArray text(mostText, '\0');
        const ssize_t count = ::pread(lock, text.data(), static_cast<size_t>(text.size()), 0);
        text.truncate(qMax<ssize_t>(0, count));
        QHash<QByteArray, QByteArray> values;
        for (const QByteArray& line : text.split('\n')) {
            const qsizetype blank = line.indexOf(' ');
            if (blank > 0 && !values.contains(line.left(blank))) {
                values.insert(line.left(blank), line.mid(blank + 1));
            }
        }
        // Only names, whatever the file says: nothing outside its folder is ever touched.
        const auto path = [&](const char* key) {
            const QString name = lastPathComponent(
                QFile::decodeName(QByteArray::fromPercentEncoding(values.value(key))));
            return name.isEmpty() ? QString() : joinPath(folder, name);
        };
        return {values.value("process"), QFile::decodeName(values.value("program")),
                path("output"),          path("aside"),
                path("leftover"),        values.value("state")};
    }
};

QString holder(const Record& record, const QString& output) {
    if (record.process.toLongLong() == ::getpid()) {
        return OutputClaim::tr("“%1” is being written by another task of this program.")
            .arg(output);
    }
    if (record.process.isEmpty()) {
        return OutputClaim::tr("“%1” is being written by another program.").arg(output);
    }
    return OutputClaim::tr("“%1” is being written by %2 (process %3).")
        .arg(output, record.program, QString::fromLatin1(record.process));
}

/// Whether what stands at the output's place may have come from the dead process.
bool isOfTheDead(const QString& output, qint64 lastSign) {
    const QFileInfo info(output);
    return info.isFile() && info.metadataChangeTime().toMSecsSinceEpoch() <= lastSign + graceTime;
}

/// Undoes or completes what the process of a claim was at when it died.
QStringList cleanUp(const Record& record, qint64 lastSign) {
    if (!record.leftover.isEmpty()) {
        QFile::remove(record.leftover);
    }
    const bool hasAside = !record.aside.isEmpty() && isTaken(record.aside);
    if (record.state == word(OutputClaim::State::Whole)) {
        if (hasAside) {
            QFile::remove(record.aside);
        }
        return {};
    }
    const bool isHalf = (record.state == word(OutputClaim::State::Making) || hasAside) &&
                        isOfTheDead(record.output, lastSign);
    if (isHalf && !QFile::remove(record.output)) {
        return {
            OutputClaim::tr(
                "“%1” is only half written, since its program was ended, and cannot be removed.")
                .arg(record.output)};
    }
    if (!hasAside && !isHalf && record.state == word(OutputClaim::State::Making) &&
        isTaken(record.output)) {
        return {
            OutputClaim::tr(
                "“%1” was being written when its program was ended, and has been changed since. "
                "Look whether it is whole.")
                .arg(record.output)};
    }
    if (!hasAside) {
        return isHalf ? QStringList(OutputClaim::tr(
                                        "“%1” was only half written when its program was ended. It "
                                        "was removed.")
                                        .arg(record.output))
                      : QStringList();
    }
    // A link keeps what stands there from being written over.
    const bool isBack = !isTaken(record.output) && QFile::rename(record.aside, record.output);
    return {isBack ? OutputClaim::tr(
                         "“%1” was being replaced when its program was ended. The earlier file is "
                         "back.")
                         .arg(record.output)
                   : OutputClaim::tr(
                         "“%1” was being replaced when its program was ended. The earlier file is "
                         "now “%2”.")
                         .arg(record.output, record.aside)};
}

/// A lock of the whole file that belongs to the open file and not to the process, so that tasks of
/// one program keep each other out as well.
struct flock wholeFile() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool isHeld(const FileDescriptor& file) {
    struct flock lock = wholeFile();
    return ::fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

enum class Lock { Taken, Held, Gone, Failed };

/// Locks the claim file and makes sure that it is still the one that stands there.
Lock lockFile(const FileDescriptor& file, const QString& path) {
    struct flock lock = wholeFile();
    if (::fcntl(file.get(), F_OFD_SETLK, &lock) != 0) {
        return errno == EAGAIN || errno == EACCES ? Lock::Held : Lock::Failed;
    }
    struct stat mine {};
    struct stat there {};
    const bool same = ::fstat(file.get(), &mine) == 0 &&
                      ::lstat(QFile::encodeName(path).constData(), &there) == 0 &&
                      mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
    return same ? Lock::Taken : Lock::Gone;
}

FileDescriptor openClaim(const QString& path, int how) {
    constexpr mode_t mode = 0644;
    return FileDescriptor(::open(QFile::encodeName(path).constData(),
                                 how | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, mode));
}

/// Whether the claim is our own user's: that of another one is his to clean up after.
bool isOurs(const FileDescriptor& lock) {
    struct stat status {};
    return ::fstat(lock.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid();
}

/// Where the file system knows no locks: whether a claim's process is still there.
bool mayLive(const Record& record) {
    const auto process = static_cast<pid_t>(record.process.toLongLong());
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

/// When the process that held the lock last gave a sign of life.
qint64 lastSignOf(const FileDescriptor& lock) {
    struct stat status {};
    constexpr qint64 milliseconds = 1000;
    constexpr qint64 nanoseconds = 1'000'000;
    return ::fstat(lock.get(), &status) == 0
               ? status.st_mtim.tv_sec * milliseconds + status.st_mtim.tv_nsec / nanoseconds
               : 0;
}

} // namespace

OutputClaim::OutputClaim(FileDescriptor lock, QString output)
    : output_(std::move(output)), lock_(std::move(lock)) {}

OutputClaim::~OutputClaim() {
    if (lock_) {
        // While it is locked, so that nobody else's is taken away.
        QFile::remove(hiddenPath(output_, claimSuffix));
    }
}

std::optional<QString> OutputClaim::holderOf(const QString& output) {
    const QString path = hiddenPath(output, claimSuffix);
    const FileDescriptor file = openClaim(path, O_RDONLY);
    if (!file || !isHeld(file)) {
        return std::nullopt;
    }
    return holder(Record::read(file.get(), folderOf(output)), output);
}

tl::expected<OutputClaim, QString> OutputClaim::take(const QString& output) {
    const QString path = hiddenPath(output, claimSuffix);
    constexpr int mostTries = 100; // each time its owner has just finished, or it looks like that
    for (int tries = 0; tries < mostTries; ++tries) {
        FileDescriptor file = openClaim(path, O_RDWR | O_CREAT);
        if (!file) {
            const int error = errno;
            return tl::make_unexpected(holderOf(output).value_or(
                tr("“%1” cannot be written: %2").arg(output, qt_error_string(error))));
        }
        const Lock lock = lockFile(file, path);
        if (lock == Lock::Gone) {
            continue;
        }
        const Record record = Record::read(file.get(), folderOf(output));
        if (lock == Lock::Held || (lock == Lock::Failed && mayLive(record))) {
            return tl::make_unexpected(holder(record, output));
        }
        if (!isOurs(file)) {
            break;
        }
        OutputClaim claim(std::move(file), output);
        if (record.fits(path)) {
            claim.recovered_ = cleanUp(record, lastSignOf(claim.lock_));
        }
        return claim;
    }
    return tl::make_unexpected(
        tr("“%1” cannot be written, since “%2” is in the way. Remove that file.")
            .arg(output, path));
}

tl::expected<void, int> OutputClaim::note(State state, const QString& aside,
                                          const QString& leftover) {
    const auto encoded = [](const QString& path) {
        return QFile::encodeName(lastPathComponent(path)).toPercentEncoding();
    };
    const QByteArray text =
        "process " + QByteArray::number(::getpid()) + "\nprogram " +
        QCoreApplication::applicationFilePath().section(u'/', -1).toUtf8().replace('\n', '?') +
        "\noutput " + encoded(output_) + "\naside " + encoded(aside) + "\nleftover " +
        encoded(leftover) + "\nstate " + word(state) + '\n';
    const auto size = static_cast<size_t>(text.size());
    if (::pwrite(lock_.get(), text.constData(), size, 0) != static_cast<ssize_t>(size) ||
        ::ftruncate(lock_.get(), static_cast<off_t>(size)) != 0) {
        return tl::make_unexpected(errno);
    }
    return {};
}

void OutputClaim::stillAtWork() {
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now - lastSign_ >= signInterval) {
        lastSign_ = now;
        ::futimens(lock_.get(), nullptr);
    }
}

QString OutputClaim::asidePath() const {
    QString path = hiddenPath(output_, asideSuffix);
    for (int number = 2; isTaken(path); ++number) {
        path = hiddenPath(output_, QStringLiteral(".%1%2").arg(number).arg(asideSuffix));
    }
    return path;
}

QStringList OutputClaim::recover(const QString& folder) {
    QStringList sentences;
    const QStringList names =
        QDir(folder).entryList({prefix + u'*' + claimSuffix}, QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        const QString path = joinPath(folder, name);
        const FileDescriptor file = openClaim(path, O_RDWR);
        if (!file || !isOurs(file) || lockFile(file, path) != Lock::Taken) {
            continue;
        }
        if (const Record record = Record::read(file.get(), folder); record.fits(path)) {
            sentences << cleanUp(record, lastSignOf(file));
        }
        QFile::remove(path);
    }
    return sentences;
}

} // namespace quav
