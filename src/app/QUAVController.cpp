#include "app/QUAVController.h"

#include "app/FileKinds.h"
#include "app/Formats.h"
#include "app/UserPrompts.h"
#include "engine/QUAVTaskQueue.h"
#include "platform/AudioProbe.h"
#include "platform/PathNames.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace quav {

namespace {

bool passes(const QString& label, const QString& path) {
    if (label == tabs::checksum) {
        return true;
    }
    const QString word = formatWord(path);
    return acceptedExtensions(label).contains(word) ||
           (label == tabs::encode && word == formats::m4a.name() && isAppleLossless(path));
}

} // namespace

QUAVController::QUAVController(const Services& services) : services_(services) {}

void QUAVController::addTab(BaseTab& tab) {
    labels_ << tab.label();
    tabMap_.insert(tab.label(), &tab);
    if (selected_.isEmpty()) {
        selectTab(tab.label());
    }
}

QStringList QUAVController::tabLabels() const {
    return labels_ + QStringList(tabs::about);
}

BaseTab* QUAVController::tab(const QString& label) const {
    return tabMap_.value(label);
}

void QUAVController::selectTab(int index) {
    const QStringList labels = tabLabels();
    if (index >= 0 && index < labels.size()) {
        selectTab(labels[index]);
    }
}

void QUAVController::selectTab(const QString& label) {
    if (label == selected_ || !tabLabels().contains(label)) {
        return;
    }
    selected_ = label;
    if (BaseTab* selectedTab = tab(label)) {
        selectedTab->displayRelevantOptions();
    }
    Q_EMIT selectedTabChanged(label);
}

void QUAVController::addFiles(const QStringList& paths) {
    if (BaseTab* selectedTab = tab(selected_)) {
        selectedTab->addFound([paths, label = selected_](WorkProgress& progress) {
            FoundFiles found = searchForAny(paths, progress);
            found.files.removeIf([&](const QString& path) {
                return progress.isCancelled() || !passes(label, path);
            });
            found.isCancelled = progress.isCancelled();
            return found;
        });
        return;
    }
    searches_.run(
        tr("Adding files"),
        [paths](WorkProgress& progress) { return searchForAny(paths, progress); },
        [this](const FoundFiles& found) { routeFromAbout(found); });
}

QString QUAVController::takerOf(const QString& path) const {
    const QString word = formatWord(path);
    const auto takes = [&](const QString& label) {
        return tab(label) && acceptedExtensions(label).contains(word);
    };
    const AudioFormat* format = formatOf(path);
    if (format && format->isPacked && tab(tabs::decode)) {
        return tabs::decode;
    }
    for (const QString& label : {tabs::encode, tabs::decode, tabs::checksum}) {
        if (takes(label)) {
            return label;
        }
    }
    return {};
}

void QUAVController::routeFromAbout(const FoundFiles& found) {
    if (!found.unusable.isEmpty()) {
        services_.prompts.alert(found.unusable.join(u'\n'), {});
    }
    if (found.isCancelled) {
        return;
    }
    QHash<QString, QStringList> taken;
    QString last;
    for (const QString& path : found.files) {
        const QString label = takerOf(path);
        taken[label] << path;
        last = label.isEmpty() ? tabs::encode : label;
    }
    taken.remove(QString());
    for (auto files = taken.cbegin(); files != taken.cend(); ++files) {
        FoundFiles ofTab;
        ofTab.files = files.value();
        tab(files.key())->addFound([ofTab](WorkProgress& /*progress*/) { return ofTab; });
    }
    selectTab(last);
}

bool QUAVController::isValidFile(const QString& tabLabel, const QString& path) {
    return quav::isValidFile(tabLabel, path);
}

bool QUAVController::applicationShouldTerminate() {
    const int count = services_.queue.taskCount();
    if (count < 1) {
        return true;
    }
    return services_.prompts.confirm(
        {tr("Tasks in Progress"),
         tr("There are %n tasks in the queue.  Are you sure you want to quit?", nullptr, count),
         tr("No"), tr("Yes"), false});
}

bool QUAVController::windowShouldClose() {
    return services_.prompts.confirm(
        {tr("Are you sure you want to quit?"), {}, tr("Cancel"), tr("Quit"), false});
}

void QUAVController::applicationWillTerminate() {
    searches_.cancelAll();
    for (BaseTab* tab : std::as_const(tabMap_)) {
        tab->endWork();
    }
    services_.queue.killAllTasks();
    services_.queue.allowSleep();
}

} // namespace quav
