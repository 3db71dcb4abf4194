#include "gui/OutputWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace quav {

namespace {

constexpr QPoint firstStep{60, 60};

} // namespace

OutputWindows::OutputWindows(UserPrompts& prompts, QObject* parent)
    : QObject(parent), prompts_(prompts) {}

QPoint OutputWindows::nextTopLeft(const OutputWindow& window) const {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint first = screen.topLeft() + firstStep;
    if (!outputWindowTopLeft_) {
        return first;
    }
    const int step = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QPoint next = *outputWindowTopLeft_ + QPoint(step, step);
    // At the screen's edge the steps start again from the corner.
    return screen.contains(QRect(next, window.size())) ? next : first;
}

void OutputWindows::show(const ReportText& text, const QString& title, const Verdicts& verdicts) {
    if (ending_) {
        return;
    }
    auto window = std::make_unique<OutputWindow>(prompts_);
    window->setTextValue(text, title);
    window->setVerdicts(verdicts);
    outputWindowTopLeft_ = nextTopLeft(*window);
    window->move(*outputWindowTopLeft_);
    connect(window.get(), &OutputWindow::closed, this,
            [this, closed = window.get()] { forget(*closed); });
    window->show();
    outputWindows_.push_back(std::move(window));
}

void OutputWindows::forget(const OutputWindow& window) {
    const auto found = std::find_if(outputWindows_.begin(), outputWindows_.end(),
                                    [&](const auto& one) { return one.get() == &window; });
    if (found != outputWindows_.end()) {
        found->release()->deleteLater(); // it is still busy closing
        outputWindows_.erase(found);
    }
}

} // namespace quav
