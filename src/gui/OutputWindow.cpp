#include "gui/OutputWindow.h"

#include "app/UserPrompts.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace quav {

namespace {

constexpr int pointSize = 10;
constexpr int columns = 84;
constexpr int lines = 24;
constexpr qint64 megabyte = 1000000;
constexpr qint64 shownAtEachEnd = 2 * megabyte;

QFont fixedPitchFont() {
    QFont font(QStringLiteral("Courier"), pointSize);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QString withoutLineEnds(QString title) {
    return title.replace(u'\n', u' ');
}

} // namespace

OutputWindow::OutputWindow(UserPrompts& prompts, QWidget* parent)
    : QWidget(parent, Qt::Window), prompts_(prompts), view_(new QPlainTextEdit(this)),
      counts_(new QLabel(this)), onlyFailures_(new QPushButton(tr("Only the &failures"), this)) {
    view_->setReadOnly(true);
    view_->setLineWrapMode(QPlainTextEdit::NoWrap);
    view_->setFont(fixedPitchFont());
    view_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view_->setAccessibleName(tr("Output"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Save)->setToolTip(tr("Save this text as a file (Ctrl+S)"));
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Close this window (Ctrl+W)"));
    counts_->hide();
    onlyFailures_->hide();
    onlyFailures_->setCheckable(true);
    onlyFailures_->setToolTip(tr("Show only the files that are not in order, and why"));
    auto* row = new QHBoxLayout;
    row->addWidget(counts_);
    row->addWidget(onlyFailures_);
    row->addWidget(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(view_);
    layout->addLayout(row);
    connect(onlyFailures_, &QPushButton::toggled, this, &OutputWindow::showFailures);

    connect(buttons, &QDialogButtonBox::accepted, this, &OutputWindow::save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, this,
            &OutputWindow::save);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this,
            &QWidget::close);
    const QFontMetrics metrics(view_->font());
    resize(metrics.averageCharWidth() * columns, metrics.lineSpacing() * lines);
}

void OutputWindow::setTextValue(const ReportText& text, const QString& title) {
    text_ = text;
    view_->setPlainText(shownText());
    setWindowTitle(withoutLineEnds(title));
}

void OutputWindow::setVerdicts(const Verdicts& verdicts) {
    const VerdictCounts counts(verdicts);
    counts_->setText(counts.text());
    counts_->setVisible(!verdicts.empty());
    onlyFailures_->setVisible(!counts.allOk());
    failures_.clear();
    for (const Verdict& verdict : verdicts) {
        if (verdict.kind != Verdict::Kind::Ok) {
            failures_ += sentence(verdict) + u'\n';
        }
    }
}

void OutputWindow::showFailures(bool only) {
    view_->setPlainText(only ? failures_ : shownText());
}

QString OutputWindow::shownText() const {
    const qint64 leftOut = text_.size() - 2 * shownAtEachEnd;
    if (leftOut <= 0) {
        return text_.text();
    }
    return text_.beginning(shownAtEachEnd) +
           tr("\n\n[About %Ln MB are left out here. Save the text to have all of it.]\n\n", nullptr,
              static_cast<int>(std::max<qint64>(1, (leftOut + megabyte / 2) / megabyte))) +
           text_.ending(shownAtEachEnd);
}

QString OutputWindow::text() const {
    return view_->toPlainText();
}

void OutputWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

void OutputWindow::save() {
    const auto path = prompts_.chooseSavePath(tr("Save the text"), {}, {});
    if (!path) {
        return;
    }
    QSaveFile file(*path);
    bool saved = file.open(QIODevice::WriteOnly);
    const ReportText shown = onlyFailures_->isChecked() ? ReportText(failures_) : text_;
    shown.read(
        [&](const QByteArray& piece) { saved = saved && file.write(piece) == piece.size(); });
    if (!saved || !file.commit()) {
        prompts_.alert(tr("The text could not be saved"),
                       tr("%1: %2").arg(*path, file.errorString()));
    }
}

} // namespace quav
