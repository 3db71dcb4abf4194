#include "checksums/ChecksumTab.h"

#include "app/FileKinds.h"
#include "app/UserPrompts.h"
#include "checksums/ChecksumOptions.h"
#include "checksums/CreateFFPTask.h"
#include "checksums/CreateMD5Task.h"
#include "checksums/CreateST5Task.h"
#include "checksums/ListNames.h"
#include "checksums/VerifyFFPTask.h"
#include "checksums/VerifyMD5Task.h"
#include "checksums/VerifyST5Task.h"
#include "checksums/VerifyToolTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

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

/// Those of the files that a checksum file of the kind is made over.
QStringList filesFor(ChecksumKind kind, const QStringList& files) {
    switch (kind) {
    case ChecksumKind::Md5:
        return files;
    case ChecksumKind::St5:
        return withWords(files, QStringLiteral("FLAC WAV AIFF AIF SHN APE WV TTA").split(u' '));
    case ChecksumKind::Ffp:
        return withWords(files, {QStringLiteral("FLAC")});
    }
    return {};
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

/// The tools that a kind of checksum file cannot be made without.
QStringList makersOf(ChecksumKind kind) {
    switch (kind) {
    case ChecksumKind::Md5:
        return {};
    case ChecksumKind::St5:
        return {QStringLiteral("shntool")};
    case ChecksumKind::Ffp:
        return {QStringLiteral("metaflac")};
    }
    return {};
}

/// How a kind of compressed file is tested.
struct Tester {
    QString tool;
    std::shared_ptr<QUAVTask> (ChecksumTab::*task)(const QString& path,
                                                   const std::shared_ptr<QUAVTaskResults>& results,
                                                   QUAVTaskQueue& queue) const;
};

/// None for a kind of file that cannot be tested.
const Tester* testerOf(const QString& path) {
    static const QHash<QString, Tester> testers{
        {QStringLiteral("FLAC"), {QStringLiteral("flac"), &ChecksumTab::verifyFlac}},
        {QStringLiteral("APE"), {QStringLiteral("mac"), &ChecksumTab::verifyAPE}},
        {QStringLiteral("WV"), {QStringLiteral("wvunpack"), &ChecksumTab::verifyWavepack}},
        {QStringLiteral("TTA"), {QStringLiteral("ttaenc"), &ChecksumTab::verifyTTA}},
    };
    const auto found = testers.constFind(formatWord(path));
    return found == testers.cend() ? nullptr : &*found;
}

} // namespace

ChecksumTab::ChecksumTab(const Services& services)
    : BaseTab(tabs::checksum, checksumOptions(), services) {}

CommandOutcome ChecksumTab::executeCommand() {
    if (files().rowCount() == 0) {
        return CommandOutcome::NothingToDo;
    }
    switch (options()[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return test();
    case ChecksumCommand::Create:
        return create();
    case ChecksumCommand::Verify:
        return verify();
    }
    return CommandOutcome::NothingToDo;
}

checksumlist::Reading ChecksumTab::reading() const {
    return options()[checksumOptions().acceptOtherSpellings] ? checksumlist::Reading::Tolerant
                                                             : checksumlist::Reading::Strict;
}

bool ChecksumTab::hasUseFor(const QString& path) const {
    switch (options()[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return testerOf(path) != nullptr;
    case ChecksumCommand::Create:
        return !filesFor(options()[checksumOptions().kind], {path}).isEmpty();
    case ChecksumCommand::Verify:
        return checksumlist::kindOf(path, reading()).has_value();
    }
    return false;
}

bool ChecksumTab::hasTools(const QStringList& names) {
    const QStringList missing = services().tools.whatIsMissing(names);
    if (!missing.isEmpty()) {
        services().prompts.alert(missing.first(), missing.mid(1).join(u'\n'));
    }
    return missing.isEmpty();
}

/// What is missing stops only what needs it, so that one complete set of tools is enough.
bool ChecksumTab::hasAnyTools(const QSet<QStringList>& sets) {
    QStringList all;
    for (const QStringList& names : sets) {
        if (services().tools.whatIsMissing(names).isEmpty()) {
            return true;
        }
        all << names;
    }
    return hasTools(all);
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
    services().queue.addTasks({task});
    return CommandOutcome::Queued;
}

CommandOutcome ChecksumTab::test() {
    QSet<QStringList> needed;
    const auto results = std::make_shared<QUAVTaskResults>();
    Tasks tasks;
    for (const QString& path : fileNames()) {
        if (const Tester* tester = testerOf(path)) {
            needed << QStringList{tester->tool};
            tasks.push_back((this->*tester->task)(path, results, services().queue));
        }
    }
    return hasAnyTools(needed) ? queueSet(tasks, results) : CommandOutcome::Refused;
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
    const auto kind = options()[checksumOptions().kind];
    const QStringList files = filesFor(kind, fileNames());
    if (files.isEmpty()) {
        clearFiles();
        return CommandOutcome::NothingToDo;
    }
    if (!hasTools(makersOf(kind)) || (kind == ChecksumKind::Ffp && refusesWhileWorking())) {
        return CommandOutcome::Refused;
    }
    const auto path = choosePath(files, kind, options()[checksumOptions().sourceSave]);
    if (!path) {
        // Who answers “No” may have another place in mind for the same files.
        if (path.error() == NoPath::DialogCancelled && kind != ChecksumKind::Ffp) {
            clearFiles();
        }
        return CommandOutcome::Declined;
    }
    switch (kind) {
    case ChecksumKind::Md5:
        return queueOne(md5Task(files, services().queue, *path));
    case ChecksumKind::St5:
        return queueOne(st5Task(files, services().queue, *path));
    case ChecksumKind::Ffp:
        return createFFP(files, *path);
    }
    return CommandOutcome::NothingToDo;
}

/// The path of a checksum file that is about to be written.
tl::expected<QString, ChecksumTab::NoPath>
ChecksumTab::choosePath(const QStringList& files, ChecksumKind kind, bool sourceSave) {
    UserPrompts& prompts = services().prompts;
    QString path;
    if (sourceSave && (kind == ChecksumKind::Ffp || areAllSameDirectory(files))) {
        path = checksumfiles::pathIn(folderOf(files.first()), kind, services().settings);
        if (!checksumfiles::mayReplace(path, prompts)) {
            return tl::make_unexpected(NoPath::AnsweredNo);
        }
    } else {
        const auto chosen = openSavePanel(checksumfiles::commonFolder(files), saveTitle(kind),
                                          checksumfiles::fixedName(kind, services().settings));
        if (!chosen) {
            return tl::make_unexpected(NoPath::DialogCancelled);
        }
        path = *chosen;
    }
    if (!listnames::mayName(kind, files, path, prompts)) {
        return tl::make_unexpected(NoPath::AnsweredNo);
    }
    return path;
}

std::shared_ptr<CreateMD5Task> ChecksumTab::createMD5(const QStringList& files,
                                                      QUAVTaskQueue& queue, bool sourceSave) {
    const auto path = choosePath(files, ChecksumKind::Md5, sourceSave);
    return path ? md5Task(files, queue, *path) : nullptr;
}

std::shared_ptr<CreateMD5Task> ChecksumTab::md5Task(const QStringList& files, QUAVTaskQueue& queue,
                                                    const QString& path) {
    auto task = std::make_shared<CreateMD5Task>(queue, files, path);
    task->setTitle(tr("Creating MD5"));
    return task;
}

std::shared_ptr<CreateST5Task> ChecksumTab::createST5(const QStringList& files,
                                                      QUAVTaskQueue& queue, bool sourceSave) {
    const auto path = choosePath(files, ChecksumKind::St5, sourceSave);
    return path ? st5Task(files, queue, *path) : nullptr;
}

std::shared_ptr<CreateST5Task> ChecksumTab::st5Task(const QStringList& files, QUAVTaskQueue& queue,
                                                    const QString& path) const {
    auto task = std::make_shared<CreateST5Task>(
        path, queue, services().tools.tool(QStringLiteral("shntool")), files);
    task->setTitle(tr("Create ST5"));
    for (const QString& file : files) {
        if (!checksumlist::isReadBack(ChecksumKind::St5, lastPathComponent(file))) {
            task->addWarning(checksumlist::notReadBack(file));
        }
    }
    return task;
}

bool ChecksumTab::areAllSameDirectory(const QStringList& paths) {
    return checksumfiles::areAllSameDirectory(paths);
}

QString ChecksumTab::fingerprint(const QString& path) const {
    return CreateFFPTask::fingerprint(services().tools, path).value_or(QString());
}

/// What reading fingerprints has come to.
struct ChecksumTab::Fingerprints {
    FingerprintText made;
    std::exception_ptr failure;
    bool isStopped = false;
};

CommandOutcome ChecksumTab::createFFP(const QStringList& files, const QString& path) {
    const QStringList listed = fileNames();
    clearFiles(); // now, since other files may come while the tools run
    const auto work = [files, path, &tools = services().tools,
                       atOnce = services().queue.toolsAtOnce()](WorkProgress& progress) {
        Fingerprints read;
        try {
            read.made = CreateFFPTask::textOver(files, path, tools, atOnce, [&](qsizetype index) {
                progress.tell(index + 1, files.size());
                return !progress.isCancelled();
            });
        } catch (...) {
            read.failure = std::current_exception();
        }
        read.isStopped = progress.isCancelled();
        return read;
    };
    inBackground(tr("Creating the fingerprint file"), work,
                 [this, listed, path](Fingerprints read) {
                     const CommandOutcome outcome = writeFingerprints(read, path);
                     if (outcome != CommandOutcome::Done) {
                         addFoundFiles(listed);
                     }
                     Q_EMIT commandEnded(outcome);
                 });
    return CommandOutcome::Running;
}

CommandOutcome ChecksumTab::writeFingerprints(Fingerprints& read, const QString& path) {
    try {
        if (read.failure) {
            std::rethrow_exception(read.failure);
        }
        if (read.isStopped) {
            return CommandOutcome::Declined;
        }
        CreateFFPTask::write(read.made, path);
    } catch (const std::exception& exception) {
        services().prompts.alert(QString::fromUtf8(exception.what()), {});
        return CommandOutcome::Refused;
    }
    Q_EMIT fingerprintsWritten(path, read.made.verdicts, read.made.warnings, read.made.failures);
    return CommandOutcome::Done;
}

CommandOutcome ChecksumTab::verify() {
    QSet<QStringList> needed;
    const auto results = std::make_shared<QUAVTaskResults>();
    Tasks tasks;
    for (const QString& path : fileNames()) {
        const checksumlist::Kinds kinds = checksumlist::kindsOf(path, reading());
        for (const ChecksumKind kind : kinds.all) {
            needed << VerifyListTask::toolsFor(kind);
            const auto task = verificationOf(path, kind, results);
            task->setReading(reading(), kinds);
            tasks.push_back(task);
        }
    }
    return hasAnyTools(needed) ? queueSet(tasks, results) : CommandOutcome::Refused;
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
