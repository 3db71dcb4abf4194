#include "gui/QUAVStringGetterPanel.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quav {

namespace {

constexpr int fieldWidthInCharacters = 40;

} // namespace

QUAVStringGetterPanel::QUAVStringGetterPanel(QWidget* parent)
    : QDialog(parent), message_(new QLabel(this)), field_(new QLineEdit(this)) {
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setBuddy(field_);
    field_->setMinimumWidth(fontMetrics().averageCharWidth() * fieldWidthInCharacters);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(message_);
    layout->addWidget(field_);
    layout->addStretch();
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::optional<QString>
QUAVStringGetterPanel::runPanelWithTitle(const std::optional<QString>& title,
                                         const std::optional<QString>& message,
                                         const std::optional<QString>& initialString) {
    if (title) {
        setWindowTitle(*title);
    }
    if (message) {
        message_->setText(*message);
        field_->setAccessibleName(*message);
    }
    if (initialString) {
        field_->setText(*initialString);
    }
    field_->selectAll();
    field_->setFocus();
    return exec() == Accepted ? std::optional(field_->text()) : std::nullopt;
}

} // namespace quav
