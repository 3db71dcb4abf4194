#include "gui/AboutPage.h"

#include "platform/Version.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace quav {

namespace {

constexpr double titleScale = 1.8;
constexpr int iconSize = 96;
constexpr int textWidthInCharacters = 56;

QLabel* addLabel(QVBoxLayout& layout, const QString& text) {
    auto* label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignHCenter);
    layout.addWidget(label, 0, Qt::AlignHCenter);
    return label;
}

} // namespace

AboutPage::AboutPage(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(1);
    const QPixmap icon = QApplication::windowIcon().pixmap(iconSize);
    if (!icon.isNull()) {
        addLabel(*layout, {})->setPixmap(icon);
    }
    QLabel* title = addLabel(*layout, tr("Quav Workbench %1").arg(shortVersion()));
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * titleScale);
    large.setBold(true);
    title->setFont(large);
    addLabel(*layout, tr("(Build %1)").arg(buildNumber()));
    layout->addSpacing(fontMetrics().height());
    QLabel* text = addLabel(*layout, tr("A workbench for people who keep music without loss. It "
                                        "encodes and decodes whole folders of files, several at a "
                                        "time, with the tools that are made for it, and takes "
                                        "their tags along."));
    text->setWordWrap(true);
    text->setFixedWidth(fontMetrics().averageCharWidth() * textWidthInCharacters);
    text->setMinimumHeight(text->heightForWidth(text->width()));
    layout->addStretch(2);
}

} // namespace quav
