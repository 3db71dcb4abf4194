#include "checksums/ChecksumTab.h"

#include "app/FileKinds.h"
#include "app/UserPrompts.h"
#include "checksums/CreateFFPTask.h"
#include "checksums/CreateMD5Task.h"
#include "checksums/CreateST5Task.h"
#include "checksums/VerifyFFPTask.h"
#include "checksums/VerifyMD5Task.h"
#include "checksums/VerifyST5Task.h"
#include "checksums/VerifyToolTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/BackgroundWork.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QEventLoop>
#include <QHash>

#include <algorithm>
#include <exception>
#include <iterator>

namespace quav {

namespace {

QStringList withWords(const QStringList& files, const QStringList& words) {
    QStringList chosen;
    std::copy_if(files.begin(), files.end(), std::back_inserter(chosen),
                 [&](const QString& file) { return words.contains(formatWord(file)); });
    return chosen;
}

QStringList flacFilesIn(const QStringList& files) {
    return withWords(files, {QStringLiteral("FLAC")});
}

/// The kinds of audio that `shntool` digests.
QStringList audioFilesIn(const QStringList& files) {
    return withWords(files, QStringLiteral("FLAC WAV AIFF AIF SHN APE WV TTA").split(u' '));
}

QString saveTitle(ChecksumKind kind) {
    switch (kind) {
    case ChecksumKind::Md5:
        return ChecksumTab::tr("Save md5 as...");
    case ChecksumKind::St5:
        return ChecksumTab::tr("Save st5 as...");
    case ChecksumKind::Ffp:
        return ChecksumTab::tr("Save fingerprint as...");
    }
    return {};
}

/// The tool that reads what a kind of checksum file has; empty: none is needed.
QString readerOf(ChecksumKind kind) {
    switch (kind) {
    case ChecksumKind::Md5:
        return {};
    case ChecksumKind::St5:
        return QStringLiteral("shntool");
    case ChecksumKind::Ffp:
        return QStringLiteral("metaflac");
    }
    return {};
}

/// The tool that tests a kind of file; empty for a kind without one.
QString testerOf(const QString& word) {
    static const QHash<QString, QString> testers{
        {QStringLiteral("FLAC"), QStringLiteral("flac")},
        {QStringLiteral("APE"), QStringLiteral("mac")},
        {QStringLiteral("WV"), QStringLiteral("wvunpack")},
        {QStringLiteral("TTA"), QStringLiteral("ttaenc")},
    };
    return testers.value(word);
}

/// The kind of checksum file that a file is; none for any other file.
std::optional<ChecksumKind> listKindOf(const QString& path, checksumlist::Reading reading) {
    const auto byName = checksumlist::kindByName(path);
    if (reading == checksumlist::Reading::Strict || !(byName || formatWord(path) == u"TXT")) {
        return byName;
    }
    const auto bytes = checksumlist::beginningOf(path);
    const auto byContent = checksumlist::kindByContent(checksumlist::decoded(bytes, reading));
    return byContent ? byContent : byName;
}

} // namespace

ChecksumTab::ChecksumTab(const Services& services) : BaseTab(tabs::checksum, services) {}

void ChecksumTab::setCommandOptions(Command command) {
    command_ = command;
    displayRelevantOptions();
}

void ChecksumTab::setCreateChecksumOptions(ChecksumKind kind) {
    kind_ = kind;
    displayRelevantOptions();
}

void ChecksumTab::setSourceSaveButton(bool on) {
    sourceSave_ = on;
    displayRelevantOptions();
}

void ChecksumTab::setAcceptOtherSpellings(bool on) {
    acceptOtherSpellings_ = on;
    displayRelevantOptions();
}

void ChecksumTab::displayRelevantOptions() {
    Q_EMIT optionsChanged();
}

CommandOutcome ChecksumTab::executeCommand() {
    if (files().rowCount() == 0) {
        return CommandOutcome::NothingToDo;
    }
    switch (command_) {
    case Command::Test:
        return test();
    case Command::Create:
        return create();
    case Command::Verify:
        return verify();
    }
    return CommandOutcome::NothingToDo;
}

checksumlist::Reading ChecksumTab::reading() const {
    return acceptOtherSpellings_ ? checksumlist::Reading::Tolerant : checksumlist::Reading::Strict;
}

bool ChecksumTab::hasUseFor(const QString& path) const {
    switch (command_) {
    case Command::Test:
        return !testerOf(formatWord(path)).isEmpty();
    case Command::Create:
        return kind_ == ChecksumKind::Md5 ||
               !(kind_ == ChecksumKind::Ffp ? flacFilesIn({path}) : audioFilesIn({path})).isEmpty();
    case Command::Verify:
        return listKindOf(path, reading()).has_value();
    }
    return false;
}

bool ChecksumTab::hasTools(const QStringList& names) {
    QStringList missing;
    for (const QString& name : names) {
        if (!name.isEmpty() && !services().tools.has(name)) {
            missing << services().tools.whatIsMissing(name);
        }
    }
    missing.removeDuplicates();
    if (!missing.isEmpty()) {
        services().prompts.alert(missing.first(), missing.mid(1).join(u'\n'));
    }
    return missing.isEmpty();
}

CommandOutcome ChecksumTab::queueSet(const Tasks& tasks,
                                     const std::shared_ptr<QUAVTaskResults>& results) {
    for (const auto& task : tasks) {
        results->addTaskInSet(*task);
    }
    clearFiles();
    if (tasks.empty()) {
        return CommandOutcome::NothingToDo;
    }
    services().queue.addTasks(tasks);
    return CommandOutcome::Queued;
}

CommandOutcome ChecksumTab::queueOne(const std::shared_ptr<QUAVTask>& task) {
    clearFiles();
    if (!task) {
        return CommandOutcome::Declined;
    }
    services().queue.addTasks({task});
    return CommandOutcome::Queued;
}

CommandOutcome ChecksumTab::test() {
    QStringList needed;
    for (const QString& path : fileNames()) {
        needed << testerOf(formatWord(path));
    }
    if (!hasTools(needed)) {
        return CommandOutcome::Refused;
    }
    const auto results = std::make_shared<QUAVTaskResults>();
    Tasks tasks;
    for (const QString& path : fileNames()) {
        if (const auto task = testOf(path, results)) {
            tasks.push_back(task);
        }
    }
    return queueSet(tasks, results);
}

std::shared_ptr<QUAVTask>
ChecksumTab::testOf(const QString& path, const std::shared_ptr<QUAVTaskResults>& results) const {
    const QString word = formatWord(path);
    QUAVTaskQueue& queue = services().queue;
    if (word == u"FLAC") {
        return verifyFlac(path, results, queue);
    }
    if (word == u"APE") {
        return verifyAPE(path, results, queue);
    }
    if (word == u"WV") {
        return verifyWavepack(path, results, queue);
    }
    return word == u"TTA" ? verifyTTA(path, results, queue) : nullptr;
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyFlac(const QString& path,
                                                  const std::shared_ptr<QUAVTaskResults>& results,
                                                  QUAVTaskQueue& queue) const {
    auto task = std::make_shared<VerifyFlacTask>(results, queue,
                                                 services().tools.tool(QStringLiteral("flac")),
                                                 QStringList{QStringLiteral("-t"), path});
    task->setTitle(tr("Verify FLAC"));
    return task;
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyAPE(const QString& path,
                                                 const std::shared_ptr<QUAVTaskResults>& results,
                                                 QUAVTaskQueue& queue) const {
    return std::make_shared<VerifyApeTask>(results, queue,
                                           services().tools.tool(QStringLiteral("mac")),
                                           QStringList{path, QStringLiteral("-v")});
}

std::shared_ptr<QUAVTask>
ChecksumTab::verifyWavepack(const QString& path, const std::shared_ptr<QUAVTaskResults>& results,
                            QUAVTaskQueue& queue) const {
    return std::make_shared<VerifyWavepackTask>(results, queue,
                                                services().tools.tool(QStringLiteral("wvunpack")),
                                                QStringList{QStringLiteral("-v"), path});
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyTTA(const QString& path,
                                                 const std::shared_ptr<QUAVTaskResults>& results,
                                                 QUAVTaskQueue& queue) const {
    return std::make_shared<VerifyTTATask>(results, queue,
                                           services().tools.tool(QStringLiteral("ttaenc")),
                                           QStringList{QStringLiteral("-t"), path});
}

CommandOutcome ChecksumTab::create() {
    if (!hasTools({readerOf(kind_)})) {
        return CommandOutcome::Refused;
    }
    const QStringList flacFiles = flacFilesIn(fileNames());
    const QStringList audioFiles = audioFilesIn(fileNames());
    QUAVTaskQueue& queue = services().queue;
    switch (kind_) {
    case ChecksumKind::Md5:
        return queueOne(createMD5(fileNames(), queue, sourceSave_));
    case ChecksumKind::St5:
        if (!audioFiles.isEmpty()) {
            return queueOne(createST5(audioFiles, queue, sourceSave_));
        }
        break;
    case ChecksumKind::Ffp:
        if (!flacFiles.isEmpty()) {
            return createFFP(flacFiles);
        }
        break;
    }
    clearFiles();
    return CommandOutcome::NothingToDo;
}

/// The path of a checksum file that is about to be written; none when the user cancelled.
std::optional<QString> ChecksumTab::choosePath(const QStringList& files, ChecksumKind kind,
                                               bool beside) {
    if (!beside) {
        return openSavePanel(checksumfiles::commonFolder(files), saveTitle(kind),
                             checksumfiles::fixedName(kind, services().settings));
    }
    QString path = checksumfiles::pathIn(folderOf(files.first()), kind, services().settings);
    return checksumfiles::mayReplace(path, services().prompts) ? std::optional(path) : std::nullopt;
}

std::shared_ptr<CreateMD5Task> ChecksumTab::createMD5(const QStringList& files,
                                                      QUAVTaskQueue& queue, bool sourceSave) {
    const auto path =
        choosePath(files, ChecksumKind::Md5, sourceSave && areAllSameDirectory(files));
    if (!path) {
        return nullptr;
    }
    auto task = std::make_shared<CreateMD5Task>(queue, files, *path);
    task->setTitle(tr("Creating MD5"));
    return task;
}

std::shared_ptr<CreateST5Task> ChecksumTab::createST5(const QStringList& files,
                                                      QUAVTaskQueue& queue, bool sourceSave) {
    const auto path =
        choosePath(files, ChecksumKind::St5, sourceSave && areAllSameDirectory(files));
    if (!path) {
        return nullptr;
    }
    auto task = std::make_shared<CreateST5Task>(*path, queue,
                                                services().tools.tool(QStringLiteral("shntool")),
                                                CreateST5Task::argumentsFor(files));
    task->setDirectory(folderOf(files.last()));
    task->setTitle(tr("Create ST5"));
    for (const QString& file : files) {
        if (!checksumlist::isReadBack(ChecksumKind::St5, lastPathComponent(file))) {
            task->addWarning(tr("“%1” cannot be found again by its name in the list").arg(file));
        }
    }
    return task;
}

bool ChecksumTab::areAllSameDirectory(const QStringList& paths) {
    return checksumfiles::areAllSameDirectory(paths);
}

QString ChecksumTab::fingerprint(const QString& path) const {
    return CreateFFPTask::fingerprint(services().tools, path);
}

CommandOutcome ChecksumTab::createFFP(const QStringList& files) {
    const auto path = choosePath(files, ChecksumKind::Ffp, sourceSave_);
    if (!path) {
        return CommandOutcome::Declined;
    }
    const QStringList listed = fileNames();
    clearFiles(); // now, since other files may come while the tools run
    auto outcome = CommandOutcome::Done;
    try {
        outcome = writeFingerprints(files, *path) ? outcome : CommandOutcome::Declined;
    } catch (const std::exception& exception) {
        services().prompts.alert(QString::fromUtf8(exception.what()), {});
        outcome = CommandOutcome::Refused;
    }
    if (outcome != CommandOutcome::Done) {
        addFoundFiles(listed);
    }
    return outcome;
}

/// False when it was stopped.
bool ChecksumTab::writeFingerprints(const QStringList& files, const QString& path) {
    FingerprintText made;
    std::exception_ptr failure;
    MainThread mainThread;
    BackgroundWork work(mainThread);
    QEventLoop loop;
    const int atOnce = services().queue.toolsAtOnce();
    bool isDone = false;
    stopWriting_ = false;
    work.run(
        [&] {
            try {
                made = CreateFFPTask::textOver(files, path, services().tools, atOnce,
                                               [this](qsizetype) { return !stopWriting_; });
            } catch (...) {
                failure = std::current_exception();
            }
        },
        [&] {
            isDone = true;
            loop.quit();
        });
    // The window goes on painting, and takes nothing from the user until the list is there.
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (!isDone) {
        stopWriting(); // the program ends
    }
    work.wait();
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (stopWriting_) {
        return false;
    }
    checksumfiles::write(path, made.text);
    Q_EMIT fingerprintsWritten(path, made.verdicts, made.warnings);
    return true;
}

CommandOutcome ChecksumTab::verify() {
    QStringList needed;
    const auto results = std::make_shared<QUAVTaskResults>();
    Tasks tasks;
    for (const QString& path : fileNames()) {
        if (const auto kind = listKindOf(path, reading())) {
            needed << readerOf(*kind);
            needed << (kind == ChecksumKind::Ffp ? QStringLiteral("flac") : QString());
            const auto task = verificationOf(path, *kind, results);
            task->setReading(reading());
            tasks.push_back(task);
        }
    }
    return hasTools(needed) ? queueSet(tasks, results) : CommandOutcome::Refused;
}

std::shared_ptr<VerifyListTask>
ChecksumTab::verificationOf(const QString& path, ChecksumKind kind,
                            const std::shared_ptr<QUAVTaskResults>& results) const {
    switch (kind) {
    case ChecksumKind::Md5:
        return std::make_shared<VerifyMD5Task>(services().queue, path, results);
    case ChecksumKind::St5:
        return std::make_shared<VerifyST5Task>(services().queue, path, results);
    case ChecksumKind::Ffp:
        return std::make_shared<VerifyFFPTask>(services().queue, path, results);
    }
    return nullptr;
}

} // namespace quav
