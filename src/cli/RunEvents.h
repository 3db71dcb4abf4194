#pragma once

#include "engine/BatchSummary.h"
#include "engine/ReportText.h"
#include "engine/TaskReport.h"
#include "platform/Interface.h"

#include <QString>

#include <chrono>

namespace quav {

class Terminal;

/// A tool that does nothing any more.
struct ToolStall {
    QString title;  ///< of its task
    QString source; ///< empty for a task without one file to read
    QString tool;
    std::chrono::milliseconds quiet;      ///< for how long already
    std::chrono::milliseconds endedAfter; ///< 0: it is not ended
};

/// What happens in a run and is told to the user, in one form or another.
class RunEvents : public Interface {
public:
    virtual void stalled(const ToolStall& stall) = 0;
    virtual void finished(const TaskReport& report) = 0;
    virtual void report(const QString& title, const ReportText& text) = 0;
    virtual void summary(const BatchSummary& summary, std::chrono::milliseconds time) = 0;
};

/// Lines for people, on the standard error stream; reports on the standard output.
class TextEvents : public RunEvents {
public:
    /// What is told beyond errors, warnings and reports.
    enum class Detail { Nothing, Summary, EveryTask };

    TextEvents(Terminal& terminal, Detail detail);

    void stalled(const ToolStall& stall) override;
    void finished(const TaskReport& report) override;
    void report(const QString& title, const ReportText& text) override;
    void summary(const BatchSummary& summary, std::chrono::milliseconds time) override;

protected:
    Terminal& terminal_;

private:
    Detail detail_;
};

/// The same with the events as JSON objects, one a line, on the standard output.
class JsonEvents : public TextEvents {
public:
    using TextEvents::TextEvents;

    void stalled(const ToolStall& stall) override;
    void finished(const TaskReport& report) override;
    void report(const QString& title, const ReportText& text) override;
    void summary(const BatchSummary& summary, std::chrono::milliseconds time) override;
};

} // namespace quav
