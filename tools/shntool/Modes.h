#pragma once

#include "shntool/Options.h"

#include <span>

namespace quav::shntool {

/// The modes, each with its work in a file of its name.
int runCmp(const Options& options, Console& console);
int runConv(const Options& options, Console& console);
int runCue(const Options& options, Console& console);
int runFix(const Options& options, Console& console);
int runGen(const Options& options, Console& console);
int runHash(const Options& options, Console& console);
int runInfo(const Options& options, Console& console);
int runJoin(const Options& options, Console& console);
int runLen(const Options& options, Console& console);
int runPad(const Options& options, Console& console);
int runSplit(const Options& options, Console& console);
int runStrip(const Options& options, Console& console);
int runTrim(const Options& options, Console& console);

/// All of them, in the order in which they are listed.
std::span<const Mode> modes();

} // namespace quav::shntool
