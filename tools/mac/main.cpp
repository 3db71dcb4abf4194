#include "audio/ape/ApeDecoder.h"
#include "audio/ape/ApeEncoder.h"
#include "audio/ape/ApeFile.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/Progress.h"
#include "common/ToolMain.h"

#include <array>
#include <cstdio>
#include <mutex>
#include <poll.h>
#include <unistd.h>
#include <utility>

using namespace quav;
using pcm::Failure;

namespace {

struct Arguments {
    std::string input;
    std::string output;
    unsigned level = 0;
    bool decode = false;
    bool verify = false;
    unsigned jobs = 1;
};

std::string progressText(const pcm::Progress::Moment& moment) {
    const double total = moment.fraction > 0 ? moment.elapsed / moment.fraction : 0;
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(),
                  "\rProgress: %.1f%% (%.1f seconds remaining, %.1f seconds total)   ",
                  moment.fraction * 100, total - moment.elapsed, total);
    return text.data();
}

// Ends the work when nobody reads our output any more. A frame takes long enough to notice before
// the next one is written: programs that want the header alone close the pipe behind it.
void checkReader() {
    pollfd output{STDOUT_FILENO, 0, 0};
    if (::poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0) {
        throw pcm::ReaderGone();
    }
}

/// What the user sees of the work: nothing while audio goes through a pipe. Programs take the first
/// number that they see for the progress, so nothing comes before it.
class Report {
public:
    explicit Report(const Arguments& arguments) : arguments_(arguments) {}

    ape::Advance begin(std::uint64_t blocks) {
        if (arguments_.output == "-") {
            return [](std::uint64_t) { checkReader(); };
        }
        if (arguments_.input == "-" && !arguments_.verify) {
            return {};
        }
        progress_ = pcm::Progress(blocks, progressText);
        done_ = 0;
        lineIsOpen_ = true;
        return [this](std::uint64_t more) {
            const std::lock_guard lock(mutex_);
            progress_.advanceTo(done_ += more);
        };
    }

    void end(const std::string& verdict) {
        if (lineIsOpen_) {
            progress_.finish();
            pcm::tellUser("\n" + verdict + "\n");
            lineIsOpen_ = false;
        }
    }

    std::string describe(const Failure& failure) const {
        constexpr std::array numbers{"1000", "1001", "1002", "1002", "2000"};
        return std::string(lineIsOpen_ ? "\n" : "") +
               "Error: " + numbers.at(static_cast<std::size_t>(failure.kind())) + " " +
               tools::toldText(failure);
    }

private:
    const Arguments& arguments_;
    std::mutex mutex_;
    pcm::Progress progress_;
    std::uint64_t done_ = 0;
    bool lineIsOpen_ = false;
};

void encode(const Arguments& arguments, Report& report) {
    ape::encodeApe(pcm::InputFile::open(arguments.input), arguments.output,
                   {.level = ape::findLevel(arguments.level),
                    .jobs = arguments.jobs,
                    .begin = [&](std::uint64_t blocks) { return report.begin(blocks); }});
    report.end("Encoded.");
}

void decode(const Arguments& arguments, Report& report) {
    const pcm::InputFile input = pcm::InputFile::open(arguments.input).spooled(arguments.output);
    ape::ApeFile file(input);
    pcm::OutputFile output(arguments.output);
    if (arguments.output == "-") {
        file.preferPlainHeader();
    }
    output.write(file.wavHeader());
    output.flush();
    ape::decodeApe(file, arguments.jobs, report.begin(file.blocks()), output);
    output.commit();
    report.end("Decoded.");
}

void verify(const Arguments& arguments, Report& report) {
    const pcm::InputFile input = pcm::InputFile::open(arguments.input).spooled("-");
    const ape::ApeFile file(input);
    const std::vector<std::string> damage =
        ape::verifyApe(file, arguments.jobs, report.begin(file.blocks()));
    if (damage.empty()) {
        report.end("Verified: the file is intact.");
        return;
    }
    std::string lines = "Damaged:";
    for (const std::string& line : damage) {
        lines += "\n  " + line;
    }
    report.end(lines);
    throw Failure(Failure::Kind::Input, input.name() + ": is damaged");
}

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App options("Encodes WAV files to Monkey's Audio (APE), decodes and verifies them.",
                     "mac");
    options.add_option("INPUT", arguments.input, "File to read; - is standard input")->required();
    options.add_option("OUTPUT", arguments.output, "File to write; - decodes to standard output");
    CLI::Option* const level =
        options
            .add_option("-c", arguments.level, "Encode, at level 1000, 2000, 3000, 4000 or 5000")
            ->check(CLI::IsMember({1000U, 2000U, 3000U, 4000U, 5000U}))
            ->type_name("LEVEL");
    CLI::Option* const decoding = options.add_flag("-d", arguments.decode, "Decode");
    CLI::Option* const verifying =
        options.add_flag("-v", arguments.verify, "Verify: check everything, write nothing");
    level->excludes(decoding)->excludes(verifying);
    decoding->excludes(verifying);
    options.add_option("-j", arguments.jobs, "Frames to work on side by side")
        ->check(CLI::Range(1U, 64U))
        ->type_name("JOBS")
        ->capture_default_str();
    options.callback([&] {
        if (level->empty() && !arguments.decode && !arguments.verify) {
            throw CLI::RequiredError("One of -c, -d and -v");
        }
        if (arguments.output.empty() && !arguments.verify) {
            throw CLI::RequiredError("OUTPUT");
        }
        if (!arguments.output.empty() && arguments.verify) {
            throw CLI::ValidationError("-v", "nothing is written, so name one file only");
        }
    });

    Report report(arguments);
    const auto run = [&] {
        if (arguments.verify) {
            verify(arguments, report);
        } else if (arguments.decode) {
            decode(arguments, report);
        } else {
            encode(arguments, report);
        }
        return 0;
    };
    return tools::runTool(
        {options, run, [&](const Failure& failure) { return report.describe(failure); }}, argc,
        argv);
}
