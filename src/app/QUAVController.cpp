#include "app/QUAVController.h"

#include "app/FileKinds.h"
#include "app/Formats.h"
#include "app/UserPrompts.h"
#include "engine/QUAVTaskQueue.h"
#include "platform/AudioProbe.h"
#include "platform/DirectoryWalk.h"
#include "platform/PathNames.h"
#include "platform/SpecialFile.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

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
    tabs_.push_back(&tab);
    if (selected_.isEmpty()) {
        selectTab(tab.label());
    }
}

QStringList QUAVController::tabLabels() const {
    QStringList labels;
    for (const BaseTab* tab : tabs_) {
        labels << tab->label();
    }
    return labels << tabs::about;
}

BaseTab* QUAVController::tab(const QString& label) const {
    const auto found = std::find_if(tabs_.begin(), tabs_.end(),
                                    [&](const BaseTab* tab) { return tab->label() == label; });
    return found == tabs_.end() ? nullptr : *found;
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

QStringList QUAVController::gather(const QStringList& paths) {
    QStringList files;
    QStringList unusable;
    for (const QString& path : paths) {
        if (isBookkeepingFile(path)) {
            continue;
        }
        if (isUndecodable(path)) {
            unusable << undecodableMessage(path);
        } else if (const auto reason = whyNotOpened(path)) {
            unusable << *reason;
        } else if (!QFileInfo(path).isDir()) {
            files << path;
        } else {
            const DirectoryContents contents = walkDirectory(path);
            unusable << unusableIn(contents);
            std::copy_if(contents.files.begin(), contents.files.end(), std::back_inserter(files),
                         [](const QString& file) {
                             return !isBookkeepingFile(file) && !pathExtension(file).isEmpty();
                         });
        }
    }
    if (!unusable.isEmpty()) {
        services_.prompts.alert(unusable.join(u'\n'), {});
    }
    return files;
}

void QUAVController::addFiles(const QStringList& paths) {
    const QStringList files = gather(paths);
    BaseTab* selectedTab = tab(selected_);
    if (!selectedTab) {
        routeFromAbout(files);
        return;
    }
    QStringList passing;
    std::copy_if(files.begin(), files.end(), std::back_inserter(passing),
                 [&](const QString& path) { return passes(selected_, path); });
    selectedTab->addFiles(passing);
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

void QUAVController::routeFromAbout(const QStringList& paths) {
    QHash<QString, QStringList> taken;
    QString last;
    for (const QString& path : paths) {
        const QString label = takerOf(path);
        taken[label] << path;
        last = label.isEmpty() ? tabs::encode : label;
    }
    taken.remove(QString());
    for (auto found = taken.cbegin(); found != taken.cend(); ++found) {
        tab(found.key())->addFoundFiles(found.value());
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
         tr("There are %1 tasks in the queue.  Are you sure you want to quit?").arg(count),
         tr("No"), tr("Yes"), false});
}

bool QUAVController::windowShouldClose() {
    return services_.prompts.confirm(
        {tr("Are you sure you want to quit?"), {}, tr("Cancel"), tr("Quit"), false});
}

void QUAVController::applicationWillTerminate() {
    services_.queue.killAllTasks();
    services_.queue.allowSleep();
}

} // namespace quav
