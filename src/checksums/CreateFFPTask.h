#pragma once

#include "engine/BackgroundTask.h"
#include "engine/Verdict.h"

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <functional>

namespace quav {

class Settings;

/// The text of a fingerprint file, and what is to be said of its entries.
struct FingerprintText {
    QString text;
    qsizetype entries = 0; ///< also those that are a complaint of the tool
    Verdicts verdicts;     ///< only of files without a fingerprint entry
    QStringList warnings;  ///< sentences
    QStringList failures;  ///< sentences about files without an entry, and what became of the list
};

/// Writes a fingerprint file into each of several folders.
class CreateFFPTask : public BackgroundTask {
    Q_DECLARE_TR_FUNCTIONS(CreateFFPTask)

public:
    /// `files` are the FLAC files of each folder, `ffpName` is the name of the file that is written
    /// there.
    CreateFFPTask(TaskHost& queue, const QMap<QString, QStringList>& files, const QString& ffpName,
                  const Settings& settings);

    /// The entry of one file; see `fingerprint::entry`.
    static tl::expected<QString, QString> fingerprint(const ToolsFolder& tools,
                                                      const QString& path);

    /// The whole text over some files, with so many tools side by side, on the calling thread.
    /// `taken` is called there after each file and says whether to go on.
    static FingerprintText textOver(const QStringList& files, const QString& ffpFile,
                                    const ToolsFolder& tools, int maxThreads,
                                    const std::function<bool(qsizetype index)>& taken);

    /// Writes the text, unless it has no entry, and adds what there is to say of that. Throws as
    /// `checksumfiles::write` does.
    static void write(FingerprintText& made, const QString& path);

protected:
    void doStartTask() override;
    void beforeEnd() override;

private:
    void doCreateFFP(const QStringList& outputs, const QString& outputDir);

    QMap<QString, QStringList> dictByOutputDir_;
    QString ffpName_;
    const Settings& settings_;
};

} // namespace quav
