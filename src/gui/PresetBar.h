#pragma once

#include <QWidget>

class QAction;
class QComboBox;
class QLabel;
class QMenu;

namespace quav {

class PresetChooser;

/// The head of a tab's options: which preset they stand at, whether they were changed since, and a
/// menu of what can be done with presets.
class PresetBar : public QWidget {
    Q_OBJECT

public:
    explicit PresetBar(PresetChooser& chooser, QWidget* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMenu* buildMenu();
    void fill();
    void refresh();

    PresetChooser& chooser_;
    QComboBox* box_;
    QLabel* state_;
    QAction* rename_ = nullptr;
    QAction* remove_ = nullptr;
};

} // namespace quav
