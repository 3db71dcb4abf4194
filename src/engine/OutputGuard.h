#pragma once

#include "engine/OutputClaim.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace quav {

class ClaimedFolders;

/// Watches over the one file that a tool is about to write, so that it appears whole or not at all
/// and belongs to one run. The output is claimed; a file that stands there already and is to be
/// overwritten is put aside under a hidden name beside it and comes back if the tool fails. A
/// source that is overwritten by its own conversion is kept aside in the same way.
class OutputGuard {
    Q_DECLARE_TR_FUNCTIONS(OutputGuard)

public:
    enum class Existing { Keep, Overwrite };

    /// Throws std::runtime_error with a sentence for the user when somebody else has the output or
    /// the source, when a link that leads nowhere stands there, or when the earlier file cannot be
    /// put aside.
    OutputGuard(const QString& output, const QString& source, Existing existing,
                ClaimedFolders& folders);
    OutputGuard(const OutputGuard&) = delete;
    OutputGuard& operator=(const OutputGuard&) = delete;
    /// An output that was never committed is not kept.
    ~OutputGuard();

    /// What was cleaned up first after a run that was killed, as sentences.
    const QStringList& recovered() const { return claim_.recovered(); }

    /// True when the output is there and this run has made it.
    bool producedHere() const;

    /// Where the source lies once the tool overwrites it in its own place; empty otherwise.
    QString sourceAside() const { return overwritesSource_ ? putAside_ : QString(); }

    /// Whether an earlier file, or the source, is there to come back.
    bool hasAside() const { return !putAside_.isEmpty(); }

    /// A file beside the output that helps to make it. Whoever made it removes it; after a run that
    /// was killed it goes with the half output. It has a name of `Util`.
    void noteHelper(const QString& path);

    /// What the tool writes to the output from now on is still ours.
    void stillAtWork() { claim_.stillAtWork(); }

    /// The output is whole: what was put aside goes. If that is not to be done, the path where it
    /// lies is returned.
    QString commit();

    /// The output is not whole: it goes, and what was put aside comes back. If that is not to be
    /// done, the path where it lies is returned.
    QString rollBack();

private:
    static OutputClaim claim(const QString& output, const QString& source, ClaimedFolders& folders);
    void putAside();

    QString output_;
    OutputClaim claim_;
    OutputClaim::State state_ = OutputClaim::State::Untouched;
    QString putAside_;
    bool overwritesSource_ = false;
    bool foreign_ = false; ///< what stands there is not ours to touch
    bool settled_ = false;
};

} // namespace quav
