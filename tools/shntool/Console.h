#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace quav::shntool {

/// Why a mode cannot go on: the text of the error, without what stands in front of it.
class ModeError : public std::runtime_error {
public:
    enum class Kind {
        Work, ///< something is wrong with a file
        Usage ///< the arguments are wrong: the help is pointed to
    };
    explicit ModeError(const std::string& text, Kind kind = Kind::Work)
        : std::runtime_error(text), kind_(kind) {}

    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

enum class ProgressKind { Percent, Dots, Spinner, Face, None };

/// What the user sees. Results go to standard output, all else to standard error, every line and
/// every step of the progress in one write and nothing held back, so that the two stay in order
/// when they share a pipe and no reader gets half a word. A terminal gets no control characters of
/// others.
class Console {
public:
    struct Settings {
        std::string mode;
        ProgressKind progress = ProgressKind::Percent;
        bool quiet = false; ///< nothing but results and errors
        bool warnings = true;
        bool debug = false;
    };

    explicit Console(Settings settings) : settings_(std::move(settings)) {}

    /// A line, or several, for standard output. Throws pcm::Failure when it cannot be written.
    void result(const std::string& lines);
    /// A name as a part of a result, which must not end the line.
    static std::string name(const std::string& name);
    /// A line that tells what has been done.
    void note(const std::string& line);
    /// "shntool [mode]: warning: TEXT"
    void warn(const std::string& text);
    void error(const ModeError& error);
    void debug(const std::string& text);

    void set(const Settings& settings) { settings_ = settings; }

private:
    friend class Meter;
    void line(const std::string& kind, const std::string& text);

    Settings settings_;
    class Meter* meter_ = nullptr; // whose line has no end yet
};

/// A line that tells how far a piece of work is: "TITLE :  37% ". It ends in OK, or in ERROR when
/// done() has not been called before something else is told or the meter goes.
class Meter {
public:
    Meter(Console& console, const std::string& title, std::uint64_t total);
    ~Meter() { fail(); }
    Meter(const Meter&) = delete;
    Meter& operator=(const Meter&) = delete;

    /// In the unit of the total.
    void advance(std::uint64_t by);
    void done();
    void fail();

private:
    std::string step(unsigned percent);
    void end(const std::string& text);

    Console& console_;
    std::uint64_t total_;
    std::uint64_t at_ = 0;
    unsigned shown_ = 0; // per cent
    std::chrono::steady_clock::time_point lastShown_ = std::chrono::steady_clock::now();
    bool isOpen_ = true;
};

} // namespace quav::shntool
