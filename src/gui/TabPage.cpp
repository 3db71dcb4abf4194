#include "gui/TabPage.h"

#include "app/BaseTab.h"
#include "gui/FileListView.h"
#include "gui/OptionForm.h"
#include "gui/PresetBar.h"
#include "gui/WorkLine.h"
#include "platform/ClockText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace quav {

namespace {

constexpr int fileColumnShare = 5;
constexpr int optionColumnShare = 3;
constexpr int actionWidthInCharacters = 26;

} // namespace

TabPage::TabPage(BaseTab& tab, QWidget* parent)
    : QWidget(parent), tab_(tab), header_(new QLabel(this)), list_(new FileListView(tab, this)),
      remove_(new QPushButton(tr("&Remove"), this)), clear_(new QPushButton(tr("&Clear"), this)),
      destination_(new QLabel(this)), action_(new QPushButton(this)) {
    auto* columns = new QHBoxLayout;
    columns->addWidget(buildFileColumn(), fileColumnShare);
    columns->addWidget(buildOptionColumn(), optionColumnShare);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addWidget(buildButtonRow());

    connect(&tab_, &BaseTab::filesChanged, this, &TabPage::refreshFiles);
    connect(&tab_.facts(), &FactsReader::changed, this, &TabPage::refreshHeader);
    connect(&tab_, &BaseTab::optionsChanged, this, &TabPage::refresh);
    connect(list_, &FileListView::selectedRowsChanged, this, &TabPage::refreshButtons);
    tab_.facts().start();
}

QWidget* TabPage::buildFileColumn() {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins({});
    header_->setBuddy(list_);
    layout->addWidget(header_);
    layout->addWidget(new WorkLine(tab_.searches(), column));
    layout->addWidget(new WorkLine(tab_.commandWork(), column));
    layout->addWidget(list_, 1);
    return column;
}

QWidget* TabPage::buildOptionColumn() {
    auto* content = new QWidget;
    auto* options = new QVBoxLayout(content);
    options->setContentsMargins({});
    options->addWidget(new PresetBar(tab_.presets(), content));
    options->addWidget(new OptionForm(tab_.options(), content));
    options->addStretch();
    auto* column = new QScrollArea(this);
    column->setFrameShape(QFrame::NoFrame);
    column->setWidgetResizable(true);
    column->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    column->setFocusPolicy(Qt::NoFocus);
    column->setWidget(content);
    // The page's own colour, not that of a list.
    column->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return column;
}

QWidget* TabPage::buildButtonRow() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    auto* add = new QPushButton(tr("&Add…"), row);
    add->setToolTip(tr("Choose files to add to the list"));
    remove_->setToolTip(tr("Take the selected files off the list (Delete); the files stay"));
    clear_->setToolTip(tr("Take all files off the list; the files stay"));
    destination_->setForegroundRole(QPalette::PlaceholderText);
    destination_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    action_->setDefault(true);
    action_->setMinimumWidth(fontMetrics().averageCharWidth() * actionWidthInCharacters);
    for (QPushButton* button : {add, remove_, clear_}) {
        layout->addWidget(button);
    }
    layout->addWidget(destination_, 1);
    layout->addWidget(action_);

    connect(add, &QPushButton::clicked, &tab_, &BaseTab::addButtonClick);
    connect(remove_, &QPushButton::clicked, list_, &FileListView::deleteSelectedRows);
    connect(clear_, &QPushButton::clicked, &tab_, &BaseTab::clearButtonClick);
    connect(action_, &QPushButton::clicked, &tab_, [this] { tab_.executeCommand(); });
    return row;
}

void TabPage::refresh() {
    destination_->setText(destinationText());
    refreshFiles();
}

void TabPage::refreshFiles() {
    refreshHeader();
    action_->setText(actionText(tab_.files().rowCount()));
    refreshButtons();
}

void TabPage::refreshHeader() {
    const int count = tab_.files().rowCount();
    QStringList parts{tr("%Ln files", nullptr, count)};
    const FactsReader& facts = tab_.facts();
    if (count > 0 && facts.length().count() > 0) {
        parts << clockText(std::chrono::round<std::chrono::seconds>(facts.length()));
    }
    if (count > 0 && facts.bytes() > 0) {
        parts << locale().formattedDataSize(facts.bytes(), 0, QLocale::DataSizeSIFormat);
    }
    header_->setText(parts.join(QStringLiteral(" · ")));
}

void TabPage::refreshButtons() {
    const bool any = tab_.files().rowCount() > 0;
    remove_->setEnabled(any && list_->hasSelectedRows());
    clear_->setEnabled(any);
    action_->setEnabled(any);
}

} // namespace quav
