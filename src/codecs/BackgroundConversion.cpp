#include "codecs/BackgroundConversion.h"

#include "engine/Util.h"
#include "platform/AudioConverter.h"
#include "platform/PathNames.h"

#include <algorithm>

namespace quav {

namespace {

const QString passedOnExtension = QStringLiteral("wav");

constexpr double whole = 100;

} // namespace

BackgroundConversion::BackgroundConversion(const Job& job, const Services& services)
    : Converting(job.source(), job.output(), services), steps_(job.steps) {}

QString BackgroundConversion::passedOn(const QString& output) {
    return Util::generateTempFileName2(folderOf(output), passedOnExtension);
}

void BackgroundConversion::startTask() {
    conversion().begin();
    BackgroundTask::startTask();
}

void BackgroundConversion::aboutToBegin() {}

std::vector<ToolCall> BackgroundConversion::repairs(const ToolCall& /*step*/) const {
    return {};
}

void BackgroundConversion::doStartTask() {
    try {
        aboutToBegin();
        if (runSteps()) {
            conversion().complete();
        } else {
            conversion().giveUp();
        }
    } catch (...) {
        conversion().giveUp();
        throw;
    }
}

bool BackgroundConversion::runSteps() {
    const QString passed = passedOn(outFile());
    QString temporary;
    for (ToolCall step : steps_) {
        if (stopRequested()) {
            return false;
        }
        if (temporary.isEmpty() && step.arguments.contains(passed)) {
            temporary = conversion().temporaryFile(passedOnExtension);
        }
        step.arguments.replaceInStrings(passed, temporary);
        if (!runStep(step)) {
            return false;
        }
    }
    return true;
}

bool BackgroundConversion::runStep(const ToolCall& step) {
    const Words words = wordsOf(step);
    if (!words.status.isEmpty()) {
        showStatus(words.status);
    }
    setProgressIndicatorValue(0);
    if (step.tool.isEmpty()) {
        return convert(step, words);
    }
    if (!runTool(step, words)) {
        return false;
    }
    const std::vector<ToolCall> more = repairs(step);
    return std::all_of(more.begin(), more.end(), [&](const ToolCall& call) {
        return !stopRequested() && runTool(call, words);
    });
}

bool BackgroundConversion::convert(const ToolCall& step, const Words& words) {
    const QString& to = step.arguments.at(1);
    const auto format = formatWord(to) == u"AIFF" ? PlainFormat::Aiff : PlainFormat::Wav;
    const auto done = convertSound(step.arguments.at(0), to, format, [&](double share) {
        if (share * whole >= progressIndicatorValue() + 1) {
            showPercent(words, share * whole);
        }
        return !stopRequested();
    });
    if (!done && !done.error().isEmpty()) {
        setFailureFacts({{}, 0, {}, isDiskFullFor(outFile(), 0), done.error()});
        failBecause(done.error());
    }
    return done.has_value();
}

bool BackgroundConversion::runTool(const ToolCall& step, const Words& words) {
    bool failed = false;
    const int status =
        BackgroundTask::runTool(step.tool, step.arguments, step.folder,
                                [&](const QString& piece) { take(piece, words, failed); });
    results()->appendResults(terminal_.finish(), *this);
    if (status == 0 && !failed) {
        return true;
    }
    if (!error()) { // one that was ended for stalling is known already
        noteFailure(step.tool, status);
    }
    setError(true);
    return false;
}

/// Before the half output goes, which may make room on a full disk.
void BackgroundConversion::noteFailure(const QString& tool, int status) {
    constexpr qint64 whereToolsEnd = 4096;
    const auto bytes = static_cast<std::uint64_t>(weight());
    const bool full =
        isDiskFullFor(outFile(), 0) ||
        isDiskFullFor(outFile(), bytes, results()->reportOf(*this).ending(whereToolsEnd));
    setFailureFacts({tool, status, {}, full});
}

void BackgroundConversion::take(const QString& piece, const Words& words, bool& failed) {
    const ToolReport said = words.read ? words.read(piece) : ToolReport();
    failed = failed || said.failed;
    if (said.percent) {
        showPercent(words, *said.percent);
    }
    results()->appendResults(terminal_.feed(piece), *this);
}

void BackgroundConversion::showPercent(const Words& words, double percent) {
    showProgress(words.progress.arg(QString::number(percent, 'f', 6)), percent);
}

void BackgroundConversion::beforeEnd() {
    reportFailureAlone();
}

} // namespace quav
