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
    connect(field_, &QLineEdit::textChanged, this, &QUAVStringGetterPanel::controlTextDidChange);
    connect(buttons, &QDialogButtonBox::accepted, this, &QUAVStringGetterPanel::ok);
    connect(buttons, &QDialogButtonBox::rejected, this, &QUAVStringGetterPanel::cancel);
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
    okReturned_ = false;
    exec();
    return okReturned_ ? std::optional(enteredText_) : std::nullopt;
}

void QUAVStringGetterPanel::ok() {
    okReturned_ = true;
    accept();
}

void QUAVStringGetterPanel::cancel() {
    okReturned_ = false;
    reject();
}

void QUAVStringGetterPanel::controlTextDidChange(const QString& text) {
    enteredText_ = text;
}

} // namespace quav
