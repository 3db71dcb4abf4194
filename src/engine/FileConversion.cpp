#include "engine/FileConversion.h"

#include "engine/FailureReason.h"
#include "engine/QUAVTask.h"
#include "engine/QUAVTaskResults.h"
#include "engine/Util.h"
#include "platform/ListText.h"
#include "platform/OwnerAccess.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SoundProof.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <exception>
#include <utility>

namespace quav {

namespace {

bool isFlac(const QString& path) {
    return formatWord(path) == u"FLAC";
}

} // namespace

void KeptOriginals::add(Original original) {
    const std::lock_guard lock(mutex_);
    originals_.push_back(std::move(original));
}

std::vector<KeptOriginals::Original> KeptOriginals::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(originals_, {});
}

FileConversion::FileConversion(QUAVTask& task, QString source, QString output,
                               const Surroundings& surroundings, Hooks hooks)
    : task_(task), source_(std::move(source)), output_(std::move(output)),
      surroundings_(surroundings), hooks_(std::move(hooks)) {}

void FileConversion::begin() {
    guard_.emplace(output_, source_, wishes_.existing, surroundings_.claims);
    for (const QString& sentence : guard_->recovered()) {
        task_.addWarning(sentence);
    }
    before_ = FileIdentity::of(source_);
}

void FileConversion::stillAtWork() {
    const std::lock_guard lock(guardLock_);
    if (guard_) {
        guard_->stillAtWork();
    }
}

QString FileConversion::temporaryFile(const QString& extension) {
    temporary_ = Util::generateTempFileName(folderOf(output_), extension);
    guard_->noteHelper(temporary_);
    return temporary_;
}

void FileConversion::removeTemporaryFile() {
    if (!temporary_.isEmpty()) {
        QFile::remove(std::exchange(temporary_, QString()));
    }
}

void FileConversion::complete() {
    removeTemporaryFile();
    try {
        conclude();
    } catch (...) {
        release();
        throw;
    }
    release();
}

/// Others may have the output from here on.
void FileConversion::release() {
    const std::lock_guard lock(guardLock_);
    guard_.reset();
}

/// Whether the source is no longer what it was when the work began: what it says then is no
/// measure for the output. One that is replaced by its own conversion does not count.
bool FileConversion::hasChanged() const {
    return guard_->sourceAside().isEmpty() && FileIdentity::of(source_) != before_;
}

void FileConversion::conclude() {
    if (!isOutputThere() || !isAllRead()) {
        rollBack();
        return;
    }
    // Tools hand the source's permissions on, and many a collection is write-protected.
    std::optional<OwnerAccess> access(std::in_place, output_);
    if (!writeTags() || !haveHeadersOfOneSound()) {
        rollBack();
        return;
    }
    switch (proof()) {
    case Proof::Refuted:
        // Both are kept, for the user to look at; but an earlier file comes back in place of one
        // that is wrong.
        if (!guard_->hasAside()) {
            commit();
            return;
        }
        [[fallthrough]];
    case Proof::Missing:
        rollBack();
        return;
    case Proof::Given:
        break;
    }
    noteLosses();
    if (surroundings_.settings.boolean(keys::keepModificationTime) &&
        !copyModificationTime(whereSourceIs(), output_)) {
        task_.addWarning(tr("the output could not be given the time of its source"));
    }
    // Before anything goes that could be read again: so far the output may only be in memory.
    if (guard_->hasAside() || wantsDeletion()) {
        if (const auto reached = reachDisk(output_); !reached) {
            fail(tr("“%1” could not be brought to the disk: %2")
                     .arg(output_, qt_error_string(reached.error())));
            rollBack();
            return;
        }
    }
    access.reset(); // before the state of the output is remembered
    commit();
    removeSource();
}

void FileConversion::commit() {
    const QString left = guard_->commit();
    task_.noteWritten(output_, {proven_, unproven_});
    if (!left.isEmpty()) {
        task_.addWarning(
            tr("the earlier output file could not be removed and is now “%1”").arg(left));
    }
}

void FileConversion::rollBack() {
    const QString putAside = guard_->rollBack();
    if (!putAside.isEmpty()) {
        const QString sentence = tr("The earlier output file is now “%1”.").arg(putAside);
        fail(sentence);
        if (task_.cancelled()) {
            task_.addWarning(sentence); // nobody reads the report of a task that was cancelled
        }
    }
}

void FileConversion::giveUp() {
    removeTemporaryFile();
    if (guard_) {
        rollBack();
        release();
    }
}

void FileConversion::fail(const QString& reason) {
    // A tool or a library may not have noticed that its last bytes found no room.
    task_.failBecause(isDiskFullFor(output_, 0)
                          ? QStringLiteral("%1: %2").arg(qt_error_string(ENOSPC), reason)
                          : reason);
}

QString FileConversion::whereSourceIs() const {
    const QString aside = guard_->sourceAside();
    return aside.isEmpty() ? source_ : aside;
}

bool FileConversion::isOutputThere() {
    const bool isThere = guard_->producedHere() && QFileInfo(output_).isFile();
    if (!isThere) {
        fail(tr("There is no output file “%1”.").arg(output_));
    }
    return isThere;
}

bool FileConversion::isAllRead() {
    const QString leftOut = sound::leftOut(whereSourceIs());
    if (!leftOut.isEmpty() && !hasChanged()) {
        task_.failBecause(tr("“%1” was not converted, since sound would be left out: %2")
                              .arg(lastPathComponent(source_), leftOut));
        return false;
    }
    return true;
}

bool FileConversion::writeTags() {
    tl::expected<void, QString> written;
    try {
        written = hooks_.copyTags();
    } catch (const std::exception& exception) {
        written = tl::make_unexpected(QString::fromUtf8(exception.what()));
    }
    if (written) {
        return true;
    }
    const QString said =
        tr("Error writing tags to file:\n%1").arg(output_) + u'\n' + written.error();
    // A tool that went on through damage did so because it was told to: what it made is kept torn.
    if (!damaged_ && !isWholeWithoutTags()) {
        fail(said);
        return false;
    }
    untagged_ = true;
    task_.results()->appendResults(said + u'\n', task_);
    task_.addWarning(tr("the tags could not be written: %1").arg(written.error()));
    return true;
}

/// After a writer that failed: whether the sound can stay, and is as the tool had made it.
bool FileConversion::isWholeWithoutTags() {
    // In its own place the source's tags would go with the source, and a full disk tears whatever
    // is written to it.
    if (!guard_->sourceAside().isEmpty() || isDiskFullFor(output_, 0)) {
        return false;
    }
    proven_ = compareSound().answer == sound::Comparison::Answer::Equal;
    return proven_;
}

sound::Comparison FileConversion::compareSound() {
    task_.setTopTextFieldString(tr("Comparing the sound"));
    task_.push(QUAVTask::StatusLine);
    return sound::compare(whereSourceIs(), output_,
                          [this] { return abandoned_ || task_.cancelled(); });
}

bool FileConversion::haveHeadersOfOneSound() {
    // What a decoder made of damage is told by its complaint, and is as long as it can be.
    if (damaged_ && isFlac(source_)) {
        return true;
    }
    const sound::Comparison headers = sound::compareHeaders(whereSourceIs(), output_);
    if (headers.answer == sound::Comparison::Answer::Different && !hasChanged()) {
        fail(tr("The new file has not the sound of the original: %1.").arg(headers.why));
        return false;
    }
    return true;
}

bool FileConversion::isProofNeeded() const {
    const bool verify = surroundings_.settings.boolean(keys::verifyBeforeDelete);
    // Damage that `flac` passes over can make a FLAC file of a FLAC file that nothing can read.
    const bool always = isFlac(source_) && isFlac(output_);
    const bool replaces = !guard_->sourceAside().isEmpty();
    return wishes_.verifyAudio || ((verify || always) && (replaces || wantsDeletion()));
}

FileConversion::Proof FileConversion::proof() {
    using Answer = sound::Comparison::Answer;
    if (proven_ || !isProofNeeded()) {
        return Proof::Given;
    }
    const sound::Comparison result = compareSound();
    const bool mayGoOn = !wishes_.verifyAudio && guard_->sourceAside().isEmpty();
    if (hasChanged()) {
        return withoutProof(tr("the original has changed since it was read"), mayGoOn);
    }
    switch (result.answer) {
    case Answer::Equal:
        proven_ = true;
        return Proof::Given;
    case Answer::Stopped:
        return guard_->sourceAside().isEmpty() ? Proof::Given : Proof::Missing;
    case Answer::Different:
        task_.failBecause(
            tr("The new file has not the sound of the original: %1.").arg(result.why));
        return Proof::Refuted;
    case Answer::Torn:
        fail(tr("The new file is not whole: %1.").arg(result.why));
        return Proof::Missing;
    case Answer::Damaged:
        // Damage that the tool has told may have been gone through on purpose.
        return withoutProof(tr("the sound could not be compared: %1").arg(result.why),
                            mayGoOn && damaged_);
    case Answer::Unreadable:
        break;
    }
    return withoutProof(tr("the sound could not be compared: %1").arg(result.why), mayGoOn);
}

/// Where nothing could be proven: the source stays at least.
FileConversion::Proof FileConversion::withoutProof(const QString& why, bool mayGoOn) {
    unproven_ = why;
    if (mayGoOn) {
        return Proof::Given;
    }
    task_.failBecause(why);
    return Proof::Missing;
}

void FileConversion::noteLosses() {
    losses_ = hooks_.losses(whereSourceIs(), output_);
    if (!losses_.isEmpty()) {
        task_.addWarning(tr("not in the output: %1").arg(listed(losses_)));
    }
}

bool FileConversion::wantsDeletion() const {
    return wishes_.deleteOriginal && !task_.error() && !task_.cancelled() && !abandoned_ &&
           !isSameFile(source_, output_);
}

/// Why the source is not to go although that was asked for; empty when it may.
QString FileConversion::reasonToKeep() const {
    if (!unproven_.isEmpty()) {
        return unproven_;
    }
    if (damaged_) {
        return tr("the tool complained of damage");
    }
    if (untagged_) {
        return tr("its tags could not be written");
    }
    return !losses_.isEmpty() && !wishes_.acceptLosses ? tr("not all of it is in the output")
                                                       : QString();
}

void FileConversion::removeSource() {
    if (!guard_->sourceAside().isEmpty()) {
        return; // it has been replaced
    }
    if (hasChanged()) {
        task_.addWarning(wantsDeletion()
                             ? tr("the original has changed since it was read, and was kept")
                             : tr("the original has changed since it was read"));
        return;
    }
    if (!wantsDeletion()) {
        return;
    }
    const QString reason = reasonToKeep();
    if (!reason.isEmpty()) {
        task_.addWarning(tr("the original was kept: %1").arg(reason));
        if (kept_ && unproven_.isEmpty() && !damaged_ && !untagged_ && FileIdentity::of(output_)) {
            kept_->add({source_, *before_, output_, *FileIdentity::of(output_)});
        }
        return;
    }
    if (const QString trouble =
            deleteOriginal(source_, surroundings_.settings, surroundings_.desktop);
        !trouble.isEmpty()) {
        task_.addWarning(trouble);
    }
}

QString deleteOriginal(const QString& path, const Settings& settings, DesktopServices& desktop) {
    Util::deleteFile(path, settings, desktop);
    return isTaken(path)
               ? FileConversion::tr("the original could not be deleted and is still there")
               : QString();
}

} // namespace quav
