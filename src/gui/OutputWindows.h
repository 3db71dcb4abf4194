#pragma once

#include "gui/OutputWindow.h"

#include <QObject>
#include <QPoint>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace quav {

class UserPrompts;

/// The output windows that are open. Each new one steps down and to the right of the one before.
class OutputWindows : public QObject {
    Q_OBJECT

public:
    explicit OutputWindows(UserPrompts& prompts, QObject* parent = nullptr);

    /// The verdicts are what the text says of files, if it does.
    void show(const ReportText& text, const QString& title, const Verdicts& verdicts = {});

    /// From now on texts are let go: the program is about to end.
    void showNoMore() { ending_ = true; }

    const std::vector<std::unique_ptr<OutputWindow>>& windows() const { return outputWindows_; }

private:
    QPoint nextTopLeft(const OutputWindow& window) const;
    void forget(const OutputWindow& window);

    UserPrompts& prompts_;
    std::vector<std::unique_ptr<OutputWindow>> outputWindows_;
    std::optional<QPoint> outputWindowTopLeft_; ///< of the window opened last
    bool ending_ = false;
};

} // namespace quav
