#pragma once

#include "app/Plan.h"
#include "codecs/Converting.h"
#include "codecs/ToolReport.h"
#include "engine/BackgroundTask.h"
#include "engine/ToolOutputReader.h"

#include <QString>

#include <vector>

namespace quav {

/// Turns one file into another in the steps of its job, one after the other on a thread of its own:
/// a tool, or this program itself where a step names none. The steps hand on to each other what
/// they call `passedOn`; that file is temporary and goes whatever happens. A cancel lets the tool
/// that runs come to its end, and starts no other.
class BackgroundConversion : public Converting<BackgroundTask> {
public:
    const QString& outFile() const { return conversion().output(); }

    void startTask() override;

    /// How the steps of a job with this output name what one leaves for the next.
    static QString passedOn(const QString& output);

protected:
    BackgroundConversion(const Job& job, const Services& services);

    /// How a step is shown.
    struct Words {
        QString status = {};   ///< when it begins; empty: what is shown stays
        QString progress = {}; ///< with a place for the percentage
        ToolReader read = nullptr;
    };
    virtual Words wordsOf(const ToolCall& step) const = 0;

    /// Called before the first step, on the worker. What it throws is why nothing is done.
    virtual void aboutToBegin();

    /// Called when a tool has succeeded, on the worker; gives what else has to be run.
    virtual std::vector<ToolCall> repairs(const ToolCall& step) const;

    void doStartTask() override;
    void beforeEnd() override;

private:
    bool runSteps();
    bool runStep(const ToolCall& step);
    bool convert(const ToolCall& step, const Words& words);
    bool runTool(const ToolCall& step, const Words& words);
    void take(const QString& piece, const Words& words, bool& failed);
    void showPercent(const Words& words, double percent);
    void noteFailure(const QString& tool, int status);

    std::vector<ToolCall> steps_;
    TerminalText terminal_;
};

} // namespace quav
