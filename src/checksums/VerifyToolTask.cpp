#include "checksums/VerifyToolTask.h"

#include "checksums/Fingerprint.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolOutput.h"
#include "engine/ToolsFolder.h"
#include "platform/FlacFile.h"
#include "platform/PathNames.h"

#include <QFileInfo>

#include <algorithm>
#include <stdexcept>

namespace quav {

namespace {

constexpr double whole = 100;

} // namespace

VerifyToolTask::VerifyToolTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                               const QString& launchPath, const QStringList& arguments,
                               const QString& path)
    : QUAVAsyncNSTask(queue, launchPath, arguments), path_(path),
      fileName_(lastPathComponent(path)), tool_(lastPathComponent(launchPath)) {
    setResults(results);
    setTitle(fileName_);
    setTextFieldString(fileName_);
    setWeight(static_cast<double>(std::max<qint64>(1, QFileInfo(path).size())));
}

void VerifyToolTask::startTask() {
    if (const QFileInfo info(path_); info.exists() && !info.isFile()) {
        refuse(tr("“%1” is no file.").arg(path_));
    }
    if (const ToolsFolder& tools = queue().toolsFolder(); !tools.has(tool_)) {
        refuse(tools.whatIsMissing(tool_));
    }
    showMainLine(title());
    QUAVAsyncNSTask::startTask();
}

void VerifyToolTask::refuse(const QString& reason) {
    results()->appendVerdicts({{{}, path_, Verdict::Kind::Unreadable, {}, {}, reason}}, *this);
    throw std::runtime_error(reason.toStdString());
}

void VerifyToolTask::showPercent(std::optional<double> percent) {
    if (percent) {
        showProgress(tr("Verifying: %1%").arg(tooloutput::sixDecimals(*percent)), *percent);
    }
}

void VerifyToolTask::noteWords(const QString& words) {
    const QString line = words.trimmed();
    if (!line.isEmpty() && !lastWords_.contains(u"ERROR")) {
        lastWords_ = line;
    }
}

void VerifyToolTask::cleanup() {
    if (cancelled()) {
        return;
    }
    Verdict verdict{{}, path_, Verdict::Kind::Ok, {}, {}, {}};
    if (exitStatus() != 0) {
        verdict.kind = QFileInfo::exists(path_) ? Verdict::Kind::Failed : Verdict::Kind::Missing;
        verdict.note = lastWords_;
    } else if (const QString damage = hiddenDamage(); !damage.isEmpty()) {
        verdict.kind = Verdict::Kind::Failed;
        verdict.note = damage;
        setError(true);
    } else {
        verdict.note = noteIntact();
    }
    results()->appendVerdicts({verdict}, *this);
}

QString VerifyToolTask::hiddenDamage() const {
    return {};
}

QString VerifyToolTask::noteIntact() {
    return {};
}

VerifyFlacTask::VerifyFlacTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                               const QString& launchPath, const QStringList& arguments)
    : VerifyToolTask(results, queue, launchPath, arguments, arguments.value(1)),
      singleResult_(queue.spillFile()) {}

void VerifyFlacTask::startTask() {
    showStatus(tr("Verifying"));
    VerifyToolTask::startTask();
}

void VerifyFlacTask::stopTask() {
    if (cancelled() && !wasLaunched()) {
        results()->appendResults(canceledWords() + u'\n', *this);
    }
    VerifyToolTask::stopTask();
}

QString VerifyFlacTask::canceledWords() const {
    return fileName() + QStringLiteral(" canceled");
}

void VerifyFlacTask::processTaskOutput(const QString& text) {
    const QString words = tooloutput::flacWords(text, fileName());
    showMainLine(fileName());
    if (words.isEmpty()) {
        return;
    }
    if (words.contains(u'%')) {
        takeProgress(words);
    } else {
        takeWords(words);
    }
}

void VerifyFlacTask::takeWords(const QString& words) {
    if (words.endsWith(u"ok")) {
        singleResult_.add(QStringLiteral("%1: testing, 100% complete").arg(fileName()));
        singleResult_.add(QStringLiteral("%1: ok").arg(fileName()));
    } else {
        singleResult_.add(QStringLiteral("%1: %2").arg(fileName(), words));
        noteWords(words);
    }
}

void VerifyFlacTask::takeProgress(const QString& words) {
    const QStringList parts = words.split(QStringLiteral("testing, "));
    double percent = -1;
    if (parts.size() % 2 != 0) {
        takeWords(words);
    } else {
        for (const QString& part : parts) {
            if (part.endsWith(u"ok")) {
                takeWords(part);
                percent = whole;
                break;
            }
            percent = tooloutput::leadingNumber(part);
            singleResult_.add(QStringLiteral("%1: testing, %2% complete")
                                  .arg(fileName(), tooloutput::sixDecimals(percent)));
        }
    }
    showPercent(percent);
}

void VerifyFlacTask::cleanup() {
    if (cancelled()) {
        singleResult_.add(canceledWords());
    }
    results()->appendResults(singleResult_.text(), *this);
    VerifyToolTask::cleanup();
}

QString VerifyFlacTask::hiddenDamage() const {
    const auto count = flacCount(path());
    return count && !count->agrees() ? count->difference() : QString();
}

QString VerifyFlacTask::noteIntact() {
    if (!fingerprint::isUnsetIn(path())) {
        return {};
    }
    addWarning(fingerprint::unsetWarning(path()));
    return fingerprint::unsetNote();
}

VerifyApeTask::VerifyApeTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                             const QString& launchPath, const QStringList& arguments)
    : VerifyToolTask(results, queue, launchPath, arguments, arguments.value(0)) {}

void VerifyApeTask::processTaskOutput(const QString& text) {
    const QString progress = QStringLiteral("Progress: ");
    if (text.contains(u'%') && text.contains(progress)) {
        showPercent(tooloutput::leadingNumber(text.section(progress, 1, 1)));
    } else {
        noteWords(text);
    }
    showMainLine(title());
    singleResult_ += text;
}

void VerifyApeTask::cleanup() {
    results()->appendResults(tooloutput::fromLastApeProgress(singleResult_, title()));
    VerifyToolTask::cleanup();
}

VerifyWavepackTask::VerifyWavepackTask(const std::shared_ptr<QUAVTaskResults>& results,
                                       TaskHost& queue, const QString& launchPath,
                                       const QStringList& arguments)
    : VerifyToolTask(results, queue, launchPath, arguments, arguments.value(1)) {}

void VerifyWavepackTask::processTaskOutput(const QString& text) {
    const QString piece = tooloutput::withoutBackspaces(text);
    const auto percent = tooloutput::numberBefore(piece, QStringLiteral("% done"));
    showPercent(percent);
    if (!percent) {
        noteWords(piece);
    }
    showMainLine(title());
    results()->appendResults(piece, *this);
}

} // namespace quav
