#pragma once

#include "app/UserPrompts.h"
#include "engine/OutputGuard.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace quav {

/// A command that a job runs.
struct ToolCall {
    QString tool; ///< the name in the tools folder; empty: this program turns one file into another
    QStringList arguments;
    QString folder = {}; ///< that it runs in; empty: it does not matter
};

/// A piece of work that can be started by itself: what is read, what is written, and the commands
/// that do it, where it takes any.
struct Job {
    QStringList sources;
    QStringList outputs = {};
    QString what = {}; ///< which of its tab's kinds of work it is, where the tab has several
    std::vector<ToolCall> steps = {};
    OutputGuard::Existing existing = OutputGuard::Existing::Keep;

    QString source() const { return sources.value(0); }
    QString output() const { return outputs.value(0); }
};

/// A file of the list that nothing would be done with.
struct LeftOut {
    enum class Why : unsigned char {
        OwnOutput,  ///< its output would be the file itself; `path` is the output
        NoFile,     ///< it is no file any more
        NotYet,     ///< the tab is yet to learn its kind
        OfNoKind,   ///< it is of no kind for the tab: skipped without a word
        Unwritable, ///< its output would have no folder to go to
    };
    QString path;
    Why why = Why::OfNoKind;

    /// Whether the file remains in the list.
    bool stays() const { return why == Why::NotYet || why == Why::Unwritable; }
};

/// Everything that pressing a tab's button would do.
struct Plan {
    std::vector<Job> jobs;
    std::vector<LeftOut> leftOut;
    QStringList obstacles;           ///< what the tab itself found in the way, as sentences
    std::vector<Question> questions; ///< each wants a yes before anything starts
    QStringList checksumFiles;       ///< written over the outputs when all is done
    /// Whether a missing tool stands in the way of everything, and not only of what needs it.
    bool needsAllTools = true;

    void leaveOut(const QString& path, LeftOut::Why why) { leftOut.push_back({path, why}); }
    QStringList leftOutPaths(LeftOut::Why why) const;
};

/// Those outputs that stand in their folders already, of the jobs that would deal so with them.
QStringList existingOutputs(const Plan& plan, OutputGuard::Existing existing);

/// The first two sources whose outputs would be the same file, however the paths are spelled.
std::optional<std::pair<QString, QString>> firstSharedOutput(const Plan& plan);

/// The first output folder that files cannot be written to, as a sentence for the user.
std::optional<QString> firstUnusableFolder(const Plan& plan);

/// Takes out the jobs whose output folders cannot be written to, so that they do not keep the
/// others from being done; nothing when there are no others.
void leaveOutUnwritable(Plan& plan);

} // namespace quav
