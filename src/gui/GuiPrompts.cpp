#include "gui/GuiPrompts.h"

#include "gui/QUAVStringGetterPanel.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace quav {

namespace {

constexpr int leastTextWidthInCharacters = 64;

/// A box whose texts are shown as they are, since file names may look like markup.
void fill(QMessageBox& box, const QString& title, const QString& message) {
    box.setWindowTitle(GuiPrompts::tr("Quav Workbench"));
    box.setTextFormat(Qt::PlainText);
    box.setText(title);
    box.setInformativeText(message);
}

/// Opens the box. It would be as wide as its first text, with a long second one in a narrow column.
void runWide(QMessageBox& box) {
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        const int width = box.fontMetrics().averageCharWidth() * leastTextWidthInCharacters;
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
    box.exec();
}

/// What was chosen; none when the user cancelled. The dialog itself remembers the folder.
QStringList run(QFileDialog& dialog) {
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

} // namespace

GuiPrompts::GuiPrompts(QObject* parent) : QObject(parent) {}

QWidget* GuiPrompts::dialogParent() const {
    QWidget* active = QApplication::activeWindow();
    return active ? active : window_.data();
}

void GuiPrompts::alert(const QString& title, const QString& message) {
    QMessageBox box(dialogParent());
    fill(box, title, message);
    box.setIcon(QMessageBox::Warning);
    box.addButton(QMessageBox::Ok);
    runWide(box);
}

void GuiPrompts::alertAfter(std::chrono::milliseconds delay, const QString& title) {
    QTimer::singleShot(delay, this, [this, title] { alert(title, {}); });
}

bool GuiPrompts::confirm(const Question& question) {
    QMessageBox box(dialogParent());
    fill(box, question.title, question.message);
    box.setIcon(QMessageBox::Question);
    const auto role = [](bool affirms) {
        return affirms ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
    };
    QPushButton* byDefault = box.addButton(question.defaultButton, role(question.defaultAffirms));
    QPushButton* alternate =
        box.addButton(question.alternateButton, role(!question.defaultAffirms));
    box.setDefaultButton(byDefault);
    box.setEscapeButton(question.defaultAffirms ? alternate : byDefault);
    runWide(box);
    return box.clickedButton() == (question.defaultAffirms ? byDefault : alternate);
}

QStringList GuiPrompts::chooseFiles(const QString& title, const QString& confirmButton) {
    QFileDialog dialog(dialogParent(), title);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setLabelText(QFileDialog::Accept, confirmButton);
    return run(dialog);
}

std::optional<QString> GuiPrompts::chooseFolder(const QString& title) {
    QFileDialog dialog(dialogParent(), title);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    const QStringList chosen = run(dialog);
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.first());
}

std::optional<QString> GuiPrompts::chooseSavePath(const QString& title, const QString& directory,
                                                  const QString& name) {
    QFileDialog dialog(dialogParent(), title, directory);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(name);
    const QStringList chosen = run(dialog);
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.first());
}

std::optional<QString> GuiPrompts::askForLine(const QString& title, const QString& message,
                                              const QString& initial) {
    QUAVStringGetterPanel panel(dialogParent());
    return panel.runPanelWithTitle(title, message, initial);
}

} // namespace quav
