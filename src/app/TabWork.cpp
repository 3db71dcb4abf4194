#include "app/TabWork.h"

#include <system_error>

namespace quav {

TabWork::TabWork(QObject* parent) : QObject(parent), worker_(mainThread_) {}

TabWork::~TabWork() {
    cancelAll();
}

void TabWork::add(Piece piece) {
    pieces_.push_back(std::move(piece));
    if (pieces_.size() == 1) {
        start();
        Q_EMIT changed();
    }
}

void TabWork::start() {
    const Piece& first = pieces_.front();
    const auto run = [work = first.work, progress = first.progress] { work(*progress); };
    const auto end = [this] { takeResult(); };
    try {
        worker_.run(run, end);
    } catch (const std::system_error&) {
        // No thread to be had: as if it had been cancelled.
        first.progress->cancel();
        run();
        mainThread_.post(end);
    }
}

void TabWork::takeResult() {
    const Piece ended = std::move(pieces_.front());
    pieces_.pop_front();
    if (isBusy()) {
        start();
    }
    Q_EMIT changed();
    ended.then();
}

QString TabWork::title() const {
    return isBusy() ? pieces_.front().title : QString();
}

qint64 TabWork::done() const {
    return isBusy() ? pieces_.front().progress->done() : 0;
}

qint64 TabWork::total() const {
    return isBusy() ? pieces_.front().progress->total() : 0;
}

void TabWork::cancel() {
    if (isBusy()) {
        pieces_.front().progress->cancel();
    }
}

void TabWork::cancelAll() {
    for (const Piece& piece : pieces_) {
        piece.progress->cancel();
    }
}

} // namespace quav
