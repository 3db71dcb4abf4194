#pragma once

#include "platform/FileDescriptor.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <optional>

namespace quav {

/// The right to write one output, for as long as the object lives: a locked file beside the output,
/// hidden, whose lock dies with its process. Its text says what is being done, so that whoever
/// finds it after its process was killed can clean up: lines of a key, a blank and a value, names
/// percent-encoded.
///
///     process 4711
///     program quav-cli
///     output 01%20Intro.flac
///     aside .quav-0123456789abcdef.aside
///     leftover
///     state replacing
class OutputClaim {
    Q_DECLARE_TR_FUNCTIONS(OutputClaim)

public:
    enum class State {
        Untouched, ///< what stands at the output's place is not ours
        Making,    ///< there was nothing; what stands there now is half an output
        Replacing, ///< the earlier file is about to be put aside, or lies there
        Whole      ///< the output is complete; what lies aside may go
    };

    /// Claims an output and cleans up after a dead claim to it. The error says in a sentence who
    /// has it, or why it cannot be claimed.
    static tl::expected<OutputClaim, QString> take(const QString& output);

    /// Who is writing this file now, as a sentence; nothing when nobody is known to be.
    static std::optional<QString> holderOf(const QString& output);

    OutputClaim(OutputClaim&& other) noexcept = default;
    OutputClaim& operator=(OutputClaim&& other) = delete;
    /// Gives the claim back.
    ~OutputClaim();

    /// Writes down what is being done. `aside` is where the earlier file lies or is about to lie,
    /// `leftover` what the tool would leave behind if it were killed; both in the output's folder,
    /// and empty when there is none. The error is the system's number.
    tl::expected<void, int> note(State state, const QString& aside = {},
                                 const QString& leftover = {});

    /// The work goes on: what is written to the output from now on is still ours. Cheap enough to
    /// be called often.
    void stillAtWork();

    /// A hidden name beside the output that is free, for the earlier file.
    QString asidePath() const;

    /// What `take` cleaned up, as sentences for the user.
    const QStringList& recovered() const { return recovered_; }

    /// Cleans up after the dead claims in a folder; gives sentences for the user. Claims of
    /// processes that live are left alone.
    static QStringList recover(const QString& folder);

private:
    OutputClaim(FileDescriptor lock, QString output);

    QString output_;
    FileDescriptor lock_;
    QStringList recovered_;
    qint64 lastSign_ = 0; ///< when `stillAtWork` last wrote, in milliseconds
};

} // namespace quav
