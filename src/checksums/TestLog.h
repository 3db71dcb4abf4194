#pragma once

#include "engine/ReportText.h"

namespace quav {

/// The part of what `flac -t` says that is worth keeping: from the last line that tells of progress
/// on; all of it when none does. Gathered line by line, so that a tool that prints without end does
/// not fill the memory.
class TestLog {
public:
    /// One that stays in memory.
    TestLog() = default;
    explicit TestLog(std::shared_ptr<SpillFile> spillFile) : text_(std::move(spillFile)) {}

    /// Adds a line, which comes without its line end.
    void add(const QString& line);

    const ReportText& text() const { return text_; }

private:
    ReportText text_;
};

} // namespace quav
