#include "platform/StopSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quav {

namespace {

constexpr std::array stopping{SIGINT, SIGTERM, SIGHUP};
constexpr int patience = 2;
constexpr unsigned lastSeconds = 2;

// What a signal handler may touch.
volatile std::sig_atomic_t count = 0;
volatile std::sig_atomic_t wakeUp = -1;
volatile std::sig_atomic_t latest = SIGTERM;

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    // No restart: a question that is waiting for its answer is to be given up.
    sigaction(signal, &action, nullptr);
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void listenNoMore() {
    for (const int signal : stopping) {
        if (!isIgnored(signal)) { // as under nohup
            setHandler(signal, SIG_DFL);
        }
    }
}

extern "C" void note(int signal) {
    const int before = errno;
    count = count + 1;
    latest = signal;
    if (count == patience) {
        listenNoMore();
        alarm(lastSeconds);
    }
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(wakeUp, &byte, 1);
    errno = before;
}

/// Ends the program by the signal that asked for it.
extern "C" void endNow(int /*signal*/) {
    setHandler(latest, SIG_DFL);
    raise(latest);
}

} // namespace

StopSignals::StopSignals() {
    count = 0;
    if (pipe2(pipe_, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals then do what they always do
    }
    wakeUp = pipe_[1];
    auto* notifier = new QSocketNotifier(pipe_[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &StopSignals::drain);
    setHandler(SIGALRM, endNow);
    for (const int signal : stopping) {
        if (!isIgnored(signal)) {
            setHandler(signal, note);
        }
    }
}

StopSignals::~StopSignals() {
    listenNoMore();
    alarm(0);
    setHandler(SIGALRM, SIG_DFL);
    wakeUp = -1;
    close(pipe_[0]);
    close(pipe_[1]);
}

int StopSignals::received() {
    return count;
}

void StopSignals::drain() {
    std::array<char, 16> bytes{};
    while (read(pipe_[0], bytes.data(), bytes.size()) > 0) {
    }
    while (reported_ < count) {
        Q_EMIT stopRequested(++reported_);
    }
}

} // namespace quav
