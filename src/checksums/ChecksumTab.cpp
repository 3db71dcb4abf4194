#include "checksums/ChecksumTab.h"

#include "app/FileKinds.h"
#include "app/Formats.h"
#include "checksums/ChecksumOptions.h"
#include "checksums/CreateFFPTask.h"
#include "checksums/CreateMD5Task.h"
#include "checksums/CreateST5Task.h"
#include "checksums/Fingerprint.h"
#include "checksums/HashRun.h"
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

#include <algorithm>
#include <exception>
#include <iterator>

namespace quav {

namespace {

QStringList filesThat(const QStringList& files, bool (*fits)(const AudioFormat& format)) {
    QStringList chosen;
    std::copy_if(files.begin(), files.end(), std::back_inserter(chosen), [&](const QString& file) {
        const AudioFormat* format = formatOf(file);
        return format && fits(*format);
    });
    return chosen;
}

/// Those of the files that a checksum file of the kind is made over.
QStringList filesFor(ChecksumKind kind, const QStringList& files) {
    switch (kind) {
    case ChecksumKind::Md5:
        return files;
    case ChecksumKind::St5:
        return filesThat(files, [](const AudioFormat& format) {
            return format.isTakenBy(AudioFormat::Checksum);
        });
    case ChecksumKind::Ffp:
        return filesThat(files, [](const AudioFormat& format) { return format == formats::flac; });
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

/// How a file is tested; for formats that can be.
ToolCall testCall(const AudioFormat& format, const QString& path) {
    return {QString::fromLatin1(format.test->tool), format.test->arguments(path)};
}

using TestTask = std::shared_ptr<QUAVTask> (ChecksumTab::*)(
    const QString& path, const std::shared_ptr<QUAVTaskResults>& results,
    QUAVTaskQueue& queue) const;

template <typename Task>
std::shared_ptr<Task> testTask(const ToolsFolder& tools, const ToolCall& call,
                               const std::shared_ptr<QUAVTaskResults>& results,
                               QUAVTaskQueue& queue) {
    return std::make_shared<Task>(results, queue, tools.tool(call.tool), call.arguments);
}

/// The format of a file that can be tested; nullptr for any other.
const AudioFormat* testableFormatOf(const QString& path) {
    const AudioFormat* format = formatOf(path);
    return format && format->test ? format : nullptr;
}

TestTask testTaskOf(const AudioFormat& format) {
    return format == formats::flac  ? &ChecksumTab::verifyFlac
           : format == formats::ape ? &ChecksumTab::verifyAPE
           : format == formats::wv  ? &ChecksumTab::verifyWavepack
                                    : &ChecksumTab::verifyTTA;
}

/// The tools that write a list of the kind.
std::vector<ToolCall> callsFor(ChecksumKind kind, const QStringList& files,
                               const ToolsFolder& tools) {
    std::vector<ToolCall> calls;
    switch (kind) {
    case ChecksumKind::Md5:
        break;
    case ChecksumKind::St5: {
        const QString shntool = QStringLiteral("shntool");
        for (const HashRun& run : HashRun::over(files, tools.tool(shntool), tools.environment())) {
            calls.push_back({shntool, run.arguments(), run.folder()});
        }
        break;
    }
    case ChecksumKind::Ffp:
        for (const QString& file : files) {
            calls.push_back(fingerprint::callFor(file));
        }
        break;
    }
    return calls;
}

/// The words by which a job says what it is.
namespace work {
const QString test = QStringLiteral("test");
const QString create = QStringLiteral("create ");
const QString verify = QStringLiteral("verify ");
} // namespace work

QString wordOf(ChecksumKind kind) {
    return QString::fromLatin1(checksumOptions().kind.info().choice(static_cast<int>(kind))->word);
}

ChecksumKind kindNamed(QStringView word) {
    return static_cast<ChecksumKind>(checksumOptions().kind.info().choice(word)->value);
}

checksumlist::Reading readingOf(const OptionValues& values) {
    return values[checksumOptions().acceptOtherSpellings] ? checksumlist::Reading::Tolerant
                                                          : checksumlist::Reading::Strict;
}

/// Whether a list over the files has a place of its own beside them.
bool hasOwnPlace(ChecksumKind kind, const QStringList& files) {
    return kind == ChecksumKind::Ffp || checksumfiles::areAllSameDirectory(files);
}

} // namespace

ChecksumTab::ChecksumTab(const Services& services)
    : PlannedTab(tabs::checksum, checksumOptions(), services) {}

bool ChecksumTab::hasUseFor(const QString& path) const {
    switch (options()[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return testableFormatOf(path) != nullptr;
    case ChecksumCommand::Create:
        return !filesFor(options()[checksumOptions().kind], {path}).isEmpty();
    case ChecksumCommand::Verify:
        return checksumlist::kindOf(path, readingOf(options().values())).has_value();
    }
    return false;
}

Plan ChecksumTab::plan(const OptionValues& values, const QString& savePath) const {
    switch (values[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return planTests();
    case ChecksumCommand::Create:
        return planList(values[checksumOptions().kind],
                        filesFor(values[checksumOptions().kind], fileNames()), savePath);
    case ChecksumCommand::Verify:
        return planVerification(values);
    }
    return {};
}

Plan ChecksumTab::planTests() const {
    Plan plan;
    plan.needsAllTools = false;
    for (const QString& path : fileNames()) {
        if (const AudioFormat* format = testableFormatOf(path)) {
            plan.jobs.push_back(
                {.sources = {path}, .what = work::test, .steps = {testCall(*format, path)}});
        }
    }
    return plan;
}

Plan ChecksumTab::planList(ChecksumKind kind, const QStringList& files,
                           const QString& savePath) const {
    Plan plan;
    if (files.isEmpty()) {
        return plan;
    }
    const bool isBeside = savePath.isEmpty();
    const QString path =
        isBeside ? checksumfiles::pathIn(folderOf(files.first()), kind, services().settings)
                 : savePath;
    plan.jobs.push_back({.sources = files,
                         .outputs = {path},
                         .what = work::create + wordOf(kind),
                         .steps = callsFor(kind, files, services().tools),
                         .existing = OutputGuard::Existing::Overwrite});
    // Who chose a path has been asked by the dialog about what stands there.
    for (const auto& question :
         {isBeside ? checksumfiles::questionBeforeReplacing(path) : std::nullopt,
          listnames::questionBeforeNaming(kind, files, path)}) {
        if (question) {
            plan.questions.push_back(*question);
        }
    }
    return plan;
}

Plan ChecksumTab::planVerification(const OptionValues& values) const {
    Plan plan;
    plan.needsAllTools = false;
    for (const QString& path : fileNames()) {
        for (const ChecksumKind kind : checksumlist::kindsOf(path, readingOf(values)).all) {
            Job job{.sources = {path}, .what = work::verify + wordOf(kind)};
            for (const QString& tool : VerifyListTask::toolsFor(kind)) {
                job.steps.push_back({tool, {}});
            }
            plan.jobs.push_back(job);
        }
    }
    return plan;
}

tl::expected<QString, PlannedTab::NoDestination> ChecksumTab::askDestination() {
    if (options()[checksumOptions().command] != ChecksumCommand::Create) {
        return QString();
    }
    const auto kind = options()[checksumOptions().kind];
    const QStringList files = filesFor(kind, fileNames());
    // Nobody has to say where what cannot be made is to go.
    if (files.isEmpty() ||
        !services().tools.whatIsMissing(VerifyListTask::toolsFor(kind)).isEmpty() ||
        (options()[checksumOptions().sourceSave] && hasOwnPlace(kind, files))) {
        return QString();
    }
    const auto path = askSavePath(files, kind);
    return path ? tl::expected<QString, NoDestination>(*path)
                : tl::make_unexpected(NoDestination{kind != ChecksumKind::Ffp});
}

std::optional<QString> ChecksumTab::askSavePath(const QStringList& files, ChecksumKind kind) {
    return openSavePanel(checksumfiles::commonFolder(files), saveTitle(kind),
                         checksumfiles::fixedName(kind, services().settings));
}

std::shared_ptr<QUAVTask>
ChecksumTab::makeTask(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const {
    if (job.what == work::test) {
        return (this->*testTaskOf(*testableFormatOf(job.source())))(job.source(), batch,
                                                                    services().queue);
    }
    if (job.what.startsWith(work::verify)) {
        const auto task = verificationOf(
            job.source(), kindNamed(QStringView(job.what).mid(work::verify.size())), batch);
        task->setReading(readingOf(options().values()));
        return task;
    }
    if (kindNamed(QStringView(job.what).mid(work::create.size())) == ChecksumKind::Md5) {
        return md5Task(job.sources, services().queue, job.output());
    }
    return st5Task(job.sources, services().queue, job.output());
}

std::optional<CommandOutcome> ChecksumTab::executeAtOnce(const Plan& plan) {
    if (plan.jobs.empty() || plan.jobs.front().what != work::create + wordOf(ChecksumKind::Ffp)) {
        return std::nullopt;
    }
    return createFFP(plan.jobs.front().sources, plan.jobs.front().output());
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyFlac(const QString& path,
                                                  const std::shared_ptr<QUAVTaskResults>& results,
                                                  QUAVTaskQueue& queue) const {
    auto task =
        testTask<VerifyFlacTask>(services().tools, testCall(formats::flac, path), results, queue);
    task->setTitle(tr("Verify FLAC"));
    return task;
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyAPE(const QString& path,
                                                 const std::shared_ptr<QUAVTaskResults>& results,
                                                 QUAVTaskQueue& queue) const {
    return testTask<VerifyApeTask>(services().tools, testCall(formats::ape, path), results, queue);
}

std::shared_ptr<QUAVTask>
ChecksumTab::verifyWavepack(const QString& path, const std::shared_ptr<QUAVTaskResults>& results,
                            QUAVTaskQueue& queue) const {
    return testTask<VerifyWavepackTask>(services().tools, testCall(formats::wv, path), results,
                                        queue);
}

std::shared_ptr<QUAVTask> ChecksumTab::verifyTTA(const QString& path,
                                                 const std::shared_ptr<QUAVTaskResults>& results,
                                                 QUAVTaskQueue& queue) const {
    return testTask<VerifyTTATask>(services().tools, testCall(formats::tta, path), results, queue);
}

/// The path of a checksum file that is about to be written.
std::optional<QString> ChecksumTab::choosePath(const QStringList& files, ChecksumKind kind,
                                               bool sourceSave) {
    const auto saved = sourceSave && hasOwnPlace(kind, files) ? std::optional<QString>(QString())
                                                              : askSavePath(files, kind);
    if (!saved) {
        return std::nullopt;
    }
    const Plan plan = planList(kind, files, *saved);
    return confirm(plan) ? std::optional(plan.jobs.front().output()) : std::nullopt;
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

TaskReport ChecksumTab::reportOn(const FingerprintText& made, const QString& path) {
    TaskReport report;
    report.name = lastPathComponent(path);
    report.output = path;
    report.warnings = made.warnings;
    report.verdicts = std::make_shared<const Verdicts>(made.verdicts);
    report.files = VerdictCounts(made.verdicts);
    if (made.entries > 0) {
        report.written << path;
    }
    if (!made.failures.isEmpty()) {
        report.outcome = TaskReport::Outcome::Failed;
        report.reason = made.failures.last();
        report.said = ReportText(made.failures.join(u'\n'));
    }
    return report;
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
    Q_EMIT fingerprintsWritten(reportOn(read.made, path));
    return CommandOutcome::Done;
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
