#include "gui/PresetBar.h"

#include "app/PresetChooser.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace quav {

PresetBar::PresetBar(PresetChooser& chooser, QWidget* parent)
    : QWidget(parent), chooser_(chooser), box_(new QComboBox(this)), state_(new QLabel(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    auto* label = new QLabel(tr("&Preset"), this);
    label->setBuddy(box_);
    box_->setObjectName(QStringLiteral("presetBox"));
    box_->setAccessibleName(tr("Preset"));
    box_->setToolTip(tr("Give all options the values of a preset"));
    box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box_->setFocusPolicy(Qt::StrongFocus);
    box_->installEventFilter(this);
    state_->setObjectName(QStringLiteral("presetState"));
    state_->setForegroundRole(QPalette::PlaceholderText);
    // The row does not move when the word comes and goes.
    state_->setMinimumWidth(state_->fontMetrics().horizontalAdvance(tr("changed")));
    auto* more = new QToolButton(this);
    more->setObjectName(QStringLiteral("presetMenuButton"));
    more->setText(QStringLiteral("…"));
    more->setAccessibleName(tr("Save and manage presets"));
    more->setToolTip(more->accessibleName());
    more->setFocusPolicy(Qt::StrongFocus);
    more->setPopupMode(QToolButton::InstantPopup);
    more->setMenu(buildMenu());
    row->addWidget(label);
    row->addWidget(box_, 1);
    row->addWidget(state_);
    row->addWidget(more);

    connect(box_, &QComboBox::activated, this, [this](int index) {
        chooser_.choose(box_->itemData(index).toString());
        fill(); // its file may be gone
    });
    connect(&chooser_.presets(), &Presets::changed, this, &PresetBar::fill);
    connect(&chooser_, &PresetChooser::changed, this, &PresetBar::refresh);
    fill();
}

QMenu* PresetBar::buildMenu() {
    auto* menu = new QMenu(this);
    menu->addAction(tr("&Save As…"), &chooser_, &PresetChooser::saveAs);
    rename_ = menu->addAction(tr("&Rename…"), &chooser_, &PresetChooser::rename);
    remove_ = menu->addAction(tr("&Delete…"), &chooser_, &PresetChooser::remove);
    menu->addSeparator();
    menu->addAction(tr("&Export…"), &chooser_, &PresetChooser::exportToFile);
    menu->addAction(tr("&Import…"), &chooser_, &PresetChooser::importFromFile);
    return menu;
}

void PresetBar::fill() {
    box_->clear();
    for (const PresetName& preset : chooser_.presets().names()) {
        box_->addItem(preset.title, preset.name);
    }
    refresh();
}

void PresetBar::refresh() {
    const PresetName& chosen = chooser_.chosen();
    box_->setCurrentIndex(box_->findData(chosen.name));
    const bool differs = chooser_.differs();
    state_->setText(differs ? tr("changed") : QString());
    box_->setAccessibleDescription(
        differs ? tr("The options were changed since this preset was chosen") : QString());
    rename_->setEnabled(!chosen.standard);
    remove_->setEnabled(!chosen.standard);
}

/// The wheel scrolls the options; it must not choose others on its way.
bool PresetBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == box_ && event->type() == QEvent::Wheel && !box_->hasFocus()) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quav
