#include "checksums/CreateFFPTask.h"

#include "checksums/ChecksumList.h"
#include "checksums/Fingerprint.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/OrderedWork.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QFileInfo>

#include <stdexcept>
#include <utility>

namespace quav {

namespace {

void take(FingerprintText& result, const QString& ffpFile, const QString& file,
          const tl::expected<QString, QString>& made) {
    if (!made) {
        result.verdicts.push_back(checksumfiles::unreadable(ffpFile, file, made.error()));
        result.failures << CreateFFPTask::tr("“%1” has no entry: %2").arg(file, made.error());
        return;
    }
    const QString& entry = *made;
    ++result.entries;
    result.text += entry;
    if (fingerprint::isComplaint(entry)) {
        result.verdicts.push_back(checksumfiles::unreadable(ffpFile, file, entry));
        result.warnings
            << CreateFFPTask::tr("“%1” has no entry but what metaflac said of it").arg(file);
    } else if (fingerprint::isUnset(entry)) {
        result.warnings << fingerprint::unsetWarning(file);
    } else if (!checksumlist::isReadBack(ChecksumKind::Ffp, lastPathComponent(file))) {
        result.warnings << checksumlist::notReadBack(file);
    }
}

} // namespace

CreateFFPTask::CreateFFPTask(TaskHost& queue, const QMap<QString, QStringList>& files,
                             const QString& ffpName, const Settings& settings)
    : BackgroundTask(queue), dictByOutputDir_(files), ffpName_(ffpName), settings_(settings) {
    setTitle(tr("Create FFP checksum file"));
}

tl::expected<QString, QString> CreateFFPTask::fingerprint(const ToolsFolder& tools,
                                                          const QString& path) {
    return fingerprint::entry(tools, path);
}

FingerprintText CreateFFPTask::textOver(const QStringList& files, const QString& ffpFile,
                                        const ToolsFolder& tools, int maxThreads,
                                        const std::function<bool(qsizetype)>& taken) {
    const QString metaflac = QStringLiteral("metaflac");
    if (!tools.has(metaflac)) {
        throw std::runtime_error(tools.whatIsMissing(metaflac).toStdString());
    }
    FingerprintText result;
    result.text = checksumfiles::header(ChecksumKind::Ffp, QDateTime::currentDateTime());
    OrderedWork<tl::expected<QString, QString>>::run(
        static_cast<size_t>(files.size()), maxThreads,
        [&](size_t index) { return fingerprint(tools, files[static_cast<qsizetype>(index)]); },
        [&](size_t at, const tl::expected<QString, QString>& entry) {
            const auto index = static_cast<qsizetype>(at);
            take(result, ffpFile, files[index], entry);
            return taken(index);
        });
    return result;
}

void CreateFFPTask::write(FingerprintText& made, const QString& path) {
    if (made.verdicts.empty()) {
        checksumfiles::write(path, made.text);
        return;
    }
    const QString told = made.entries > 0
                             ? checksumfiles::writeIncomplete(path, made.text)
                             : tr("“%1” was not written: it would have no entry").arg(path);
    if (told.isEmpty()) {
        return;
    }
    made.warnings << told;
    if (!made.failures.isEmpty()) {
        made.failures.prepend(told);
    }
}

void CreateFFPTask::doStartTask() {
    showProgress(tr("Creating FFP checksum file"), 0);
    for (auto folder = dictByOutputDir_.cbegin();
         folder != dictByOutputDir_.cend() && !stopRequested(); ++folder) {
        doCreateFFP(folder.value(), folder.key());
    }
}

void CreateFFPTask::doCreateFFP(const QStringList& outputs, const QString& outputDir) {
    // A batch that failed or was cancelled has not made all of them, and a list of complaints is of
    // no use; when it has made none, an earlier list stays.
    QStringList files;
    for (const QString& output : outputs) {
        if (QFileInfo::exists(output)) {
            files << output;
        } else {
            addWarning(tr("“%1” is not there and has no entry").arg(output));
        }
    }
    if (files.isEmpty()) {
        return;
    }
    const bool named = settings_.boolean(keys::checksumFileUsesOutputDirName);
    const QString path = named ? checksumfiles::pathIn(outputDir, ChecksumKind::Ffp, settings_)
                               : joinPath(outputDir, ffpName_);
    setProgressIndicatorValue(0); // each folder has the bar to itself
    FingerprintText made =
        textOver(files, path, queue().toolsFolder(), queue().toolsAtOnce(), [&](qsizetype index) {
            showMainLine(lastPathComponent(files[index]));
            showCount(tr("Creating FFP checksum file"), index + 1, files.size());
            return !stopRequested();
        });
    if (stopRequested()) {
        return;
    }
    write(made, path);
    if (made.entries > 0) {
        noteWritten(path);
    }
    for (const QString& warning : made.warnings) {
        addWarning(warning);
    }
    if (!made.failures.isEmpty()) {
        setError(true);
        results()->appendResults(made.failures.join(u'\n') + u'\n', *this);
    }
    results()->appendVerdicts(std::move(made.verdicts), *this);
}

void CreateFFPTask::beforeEnd() {
    results()->setHasResults(error());
}

} // namespace quav
