#include "engine/OutputGuard.h"

#include "engine/ClaimedFolders.h"
#include "platform/FileIdentity.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace quav {

namespace {

using State = OutputClaim::State;

[[noreturn]] void refuse(const QString& sentence) {
    throw std::runtime_error(sentence.toStdString());
}

/// What `flac` calls its output while it overwrites its own source; a killed one leaves it behind.
QString ownLeftover(const QString& output) {
    return output + QStringLiteral(".tmp,fl-ac+en'c");
}

/// A second name for a file, or a copy where the file system has no second names.
bool keepCopy(const QString& path, const QString& copy) {
    return ::link(QFile::encodeName(path).constData(), QFile::encodeName(copy).constData()) == 0 ||
           QFile::copy(path, copy);
}

} // namespace

OutputGuard::OutputGuard(const QString& output, const QString& source, Existing existing,
                         ClaimedFolders& folders)
    : output_(output), claim_(claim(output, source, folders)) {
    if (isDanglingLink(output_)) {
        refuse(tr("“%1” is a link that leads nowhere. Remove it, or choose another folder.")
                   .arg(output_));
    }
    const bool exists = QFileInfo::exists(output_);
    overwritesSource_ = exists && isSameFile(output_, source);
    if (exists && (existing == Existing::Keep || !QFileInfo(output_).isFile())) {
        foreign_ = true;
    }
    if (!foreign_) {
        state_ = exists ? State::Replacing : State::Making;
        putAside_ = exists ? claim_.asidePath() : QString();
    }
    if (const auto noted =
            claim_.note(state_, putAside_, overwritesSource_ ? ownLeftover(output_) : QString());
        !noted) {
        refuse(tr("“%1” cannot be written: %2").arg(output_, qt_error_string(noted.error())));
    }
    if (!putAside_.isEmpty()) {
        putAside();
    }
}

OutputGuard::~OutputGuard() {
    rollBack();
}

OutputClaim OutputGuard::claim(const QString& output, const QString& source,
                               ClaimedFolders& folders) {
    folders.note(folderOf(output));
    auto taken = OutputClaim::take(output);
    if (!taken) {
        refuse(taken.error());
    }
    if (const auto writer = OutputClaim::holderOf(source); writer && !isSameFile(output, source)) {
        refuse(*writer);
    }
    return std::move(*taken);
}

void OutputGuard::putAside() {
    const bool done =
        overwritesSource_ ? keepCopy(output_, putAside_) : QFile::rename(output_, putAside_);
    if (!done) {
        [[maybe_unused]] const auto noted = claim_.note(State::Untouched);
        settled_ = true;
        refuse(tr("“%1” could not be put aside").arg(output_));
    }
}

void OutputGuard::noteHelper(const QString& path) {
    // Where that fails, a killed run leaves the file behind; that is no reason to do nothing.
    [[maybe_unused]] const auto noted = claim_.note(state_, putAside_, path);
}

bool OutputGuard::producedHere() const {
    return !foreign_ && QFileInfo::exists(output_);
}

QString OutputGuard::commit() {
    if (std::exchange(settled_, true) || foreign_) {
        return {};
    }
    // Written down first: from here on what lies aside is not to come back. Where that fails, it is
    // gone before anybody could bring it back.
    [[maybe_unused]] const auto noted = claim_.note(State::Whole, putAside_);
    return putAside_.isEmpty() || QFile::remove(putAside_) ? QString() : putAside_;
}

QString OutputGuard::rollBack() {
    if (std::exchange(settled_, true) || foreign_) {
        return {};
    }
    QFile::remove(output_);
    if (putAside_.isEmpty() || QFile::rename(putAside_, output_)) {
        return {};
    }
    return putAside_;
}

} // namespace quav
