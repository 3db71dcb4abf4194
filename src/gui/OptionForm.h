#pragma once

#include "app/Option.h"

#include <QHash>
#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

class QBoxLayout;
class QGroupBox;
class QVBoxLayout;

namespace quav {

class TabOptions;

/// The controls of a tab's options, in boxes as their rows say. Each control bears the option's key
/// as its object name, a radio button also its word: "flacVerifyButton", "outputFormatMatrix.wav".
class OptionForm : public QWidget {
    Q_OBJECT

public:
    explicit OptionForm(TabOptions& options, QWidget* parent = nullptr);

private:
    /// A row of the form: an option with what shows it.
    struct Row {
        const OptionInfo* option;
        QWidget* widget;            ///< all of its controls
        std::function<void()> show; ///< brings them up to date
    };

    void addGroup(const char* group, QVBoxLayout* column);
    void addRow(const OptionInfo& option, QVBoxLayout* group);
    std::function<void()> addSwitch(const OptionInfo& option, QBoxLayout* row);
    std::function<void()> addChoice(const OptionInfo& option, QBoxLayout* row);
    std::function<void()> addSlider(const OptionInfo& option, QBoxLayout* row);
    std::function<void()> addNumber(const OptionInfo& option, QBoxLayout* row);
    std::function<void()> addText(const OptionInfo& option, QBoxLayout* row);
    void refresh();

    TabOptions& options_;
    std::vector<Row> rows_;
    QHash<QString, QGroupBox*> boxes_; ///< by the group
};

} // namespace quav
