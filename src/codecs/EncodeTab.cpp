#include "codecs/EncodeTab.h"

#include "app/FileKinds.h"
#include "checksums/ChecksumFiles.h"
#include "checksums/CreateFFPTask.h"
#include "codecs/Codec.h"
#include "codecs/EncodeOptions.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <algorithm>

namespace quav {

namespace {

/// By the folders that get a list each, whatever the spellings of one of them: of two lists in one
/// place the second would replace the first.
QMap<QString, QStringList> outputsByFolder(const Plan& plan) {
    QMap<QString, QStringList> outputs;
    QHash<QString, QString> firstSpelling; // by the real folder
    QHash<QString, QString> spellings;     // to the first one of the same folder
    for (const Job& job : plan.jobs) {
        const QString output = job.output();
        const QString folder = folderOf(output);
        QString& spelling = spellings[folder];
        if (spelling.isEmpty()) {
            QString& first = firstSpelling[folderOf(withRealFolder(output))];
            first = first.isEmpty() ? folder : first;
            spelling = first;
        }
        outputs[spelling] << output;
    }
    return outputs;
}

} // namespace

EncodeTab::EncodeTab(const Services& services)
    : ConversionTab(tabs::encode, encodeOptions(), services) {}

Plan EncodeTab::plan(const OptionValues& values, const QString& chosenFolder) const {
    const EncodeOptions& rows = encodeOptions();
    const Codec& codec = codecOf(values[rows.outputFormat]);
    Plan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.leaveOut(source, LeftOut::Why::NoFile);
        } else if (!codec.takes(source)) {
            plan.leaveOut(source, LeftOut::Why::NotYet);
        } else {
            plan.jobs.push_back(
                {.sources = {source},
                 .outputs = {joinPath(outputFolder(source, chosenFolder, values),
                                      baseName(source) + u'.' +
                                          QLatin1StringView(codec.format.extension))}});
        }
    }
    leaveOutUnwritable(plan);
    if (codec.existingOutputs == ExistingOutputs::Asked) {
        overwriteAllOrNone(plan);
    } else {
        refuseClash(plan);
    }
    for (Job& job : plan.jobs) {
        job.steps = codec.encode(values, job);
    }
    if (codec.format == formats::flac && values[rows.generateFFP]) {
        for (const QString& folder : outputsByFolder(plan).keys()) {
            planChecksumFile(plan,
                             checksumfiles::pathIn(folder, ChecksumKind::Ffp, services().settings));
        }
    }
    return plan;
}

bool EncodeTab::isFileClash(const QStringList& files, const QStringList& outputFiles) {
    const QSet<QString> outputs(outputFiles.begin(), outputFiles.end());
    return std::any_of(files.begin(), files.end(),
                       [&](const QString& file) { return outputs.contains(file); });
}

void EncodeTab::refuseClash(Plan& plan) const {
    QStringList outputs;
    for (const Job& job : plan.jobs) {
        outputs << job.outputs;
    }
    if (isFileClash(fileNames(), outputs)) {
        plan.obstacles << tr("One of the output files already exists and will be overwritten.  "
                             "Select a different output directory and try again");
    }
}

std::shared_ptr<QUAVTask> EncodeTab::makeFollowUp(const Plan& plan) const {
    if (plan.checksumFiles.isEmpty()) {
        return nullptr;
    }
    const Settings& settings = services().settings;
    return std::make_shared<CreateFFPTask>(services().queue, outputsByFolder(plan),
                                           checksumfiles::fixedName(ChecksumKind::Ffp, settings),
                                           settings);
}

ConvertingTask EncodeTab::makeConversion(const Job& job,
                                         const std::shared_ptr<QUAVTaskResults>& batch) const {
    return codecOf(job.output())->makeEncoder(job, services(), batch);
}

} // namespace quav
