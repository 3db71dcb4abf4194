#pragma once

#include <QObject>

namespace quav {

/// Ctrl-C and the other polite ways of ending a program, as a signal in the event loop. With the
/// second one the program has two seconds to end by itself, then it is ended, whether its event
/// loop turns or not; the third ends it as if nobody listened. One object at a time.
class StopSignals : public QObject {
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

    /// How many have come, whether the event loop has turned since or not.
    static int received();

Q_SIGNALS:
    void stopRequested(int howManyTimes);

private:
    void drain();

    int pipe_[2] = {-1, -1};
    int reported_ = 0;
};

} // namespace quav
