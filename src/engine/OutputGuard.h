#pragma once

#include <QString>

namespace quav {

/// Watches over the one file that a tool is about to write, so that it appears whole or not at
/// all. A file that stands there already and is to be overwritten is put aside under a hidden name
/// beside it and comes back if the tool fails.
class OutputGuard {
public:
    enum class Existing { Keep, Overwrite };

    /// Looks at what is there now, and puts it aside when it is to be overwritten; never the
    /// source itself, which a tool that overwrites its own input replaces by itself. Throws
    /// std::runtime_error when it cannot be put aside.
    OutputGuard(QString output, const QString& source, Existing existing);
    OutputGuard(const OutputGuard&) = delete;
    OutputGuard& operator=(const OutputGuard&) = delete;
    /// An output that was never committed is not kept.
    ~OutputGuard();

    /// True when the output is there and this run has made it.
    bool producedHere() const;

    /// The output is whole: what was put aside goes.
    void commit();

    /// The output is not whole: it goes, and what was put aside comes back. If that is not to be
    /// done, the path where it lies is returned.
    QString rollBack();

private:
    QString output_;
    QString putAside_;
    bool foreign_ = false; ///< what stands there is not ours to touch
    bool settled_ = false;
};

} // namespace quav
