#pragma once

#include "engine/OutputGuard.h"
#include "platform/FileIdentity.h"
#include "platform/SoundProof.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace quav {

class ClaimedFolders;
class DesktopServices;
class QUAVTask;
class Settings;

/// What the user wants of a conversion beside the output.
struct ConversionWishes {
    OutputGuard::Existing existing = OutputGuard::Existing::Keep;
    bool deleteOriginal = false;
    bool verifyAudio = false;  ///< compare the sound also when nothing is deleted
    bool acceptLosses = false; ///< delete an original although not all of it is in the output
};

/// The originals of a batch that were kept only because something beside their sound is not in the
/// outputs, so that the user can be asked about all of them at once. Any thread.
class KeptOriginals {
public:
    struct Original {
        QString path;
        FileIdentity identity;
        QString output; ///< what was made of it
        FileIdentity outputIdentity;
    };
    void add(Original original);
    std::vector<Original> take();

private:
    std::mutex mutex_;
    std::vector<Original> originals_;
};

/// What makes the conversion of one file safe, for whatever task does it: the output is claimed,
/// appears whole or not at all, has the tags and the sound of its source, and the source goes only
/// when the user asked for it and all of it is there. The task hears of everything through its
/// warnings, its report and its error flag.
class FileConversion {
    Q_DECLARE_TR_FUNCTIONS(FileConversion)

public:
    /// The things belong to whoever made them and outlive the conversion.
    struct Surroundings {
        const Settings& settings;
        DesktopServices& desktop;
        ClaimedFolders& claims;
    };

    /// What only the task knows.
    struct Hooks {
        /// Takes the tags along; the error says what failed.
        std::function<tl::expected<void, QString>()> copyTags;
        /// What beside the sound of the first file is not in the second, in words.
        std::function<QStringList(const QString& source, const QString& output)> losses;
    };

    FileConversion(QUAVTask& task, QString source, QString output, const Surroundings& surroundings,
                   Hooks hooks);

    const QString& source() const { return source_; }
    const QString& output() const { return output_; }
    const ConversionWishes& wishes() const { return wishes_; }
    void setWishes(const ConversionWishes& wishes) { wishes_ = wishes; }
    /// Where to enter a source that is kept for its tags' sake alone.
    void setKeptOriginals(std::shared_ptr<KeptOriginals> kept) { kept_ = std::move(kept); }

    /// Claims the output, before anything is written. Throws std::runtime_error with a sentence.
    void begin();

    /// The work goes on. Cheap. The thread that called `begin`, at any time.
    void stillAtWork();

    /// Makes an empty file beside the output for a step in between; it goes when the conversion
    /// ends, however it ends, and also after a run that was killed. At most one at a time, between
    /// `begin` and the end. Throws std::system_error when it cannot be made.
    QString temporaryFile(const QString& extension);

    /// The temporary file has done its work.
    void removeTemporaryFile();

    /// The tool complained of damage in the source and went on: the source is kept.
    void noteDamage() { damaged_ = true; }

    /// The output has been written without an error: checks it, and does all that is to follow. A
    /// worker thread, since it may read both files whole.
    void complete();

    /// There will be no whole output.
    void giveUp();

    /// Nobody waits for the end any more. Any thread.
    void abandon() { abandoned_ = true; }

private:
    enum class Proof : unsigned char {
        Given,   ///< or not asked for
        Missing, ///< so that the output is not to be kept
        Refuted  ///< both files are there to be read, and differ
    };

    void conclude();
    void commit();
    void rollBack();
    void release();
    bool hasChanged() const;
    bool isOutputThere();
    bool isAllRead();
    bool writeTags();
    bool isWholeWithoutTags();
    bool haveHeadersOfOneSound();
    bool isProofNeeded() const;
    Proof proof();
    sound::Comparison compareSound();
    Proof withoutProof(const QString& why, bool mayGoOn);
    void fail(const QString& reason);
    void noteLosses();
    void removeSource();
    QString reasonToKeep() const;
    bool wantsDeletion() const;
    QString whereSourceIs() const;

    QUAVTask& task_;
    QString source_;
    QString output_;
    Surroundings surroundings_;
    Hooks hooks_;
    ConversionWishes wishes_;
    std::shared_ptr<KeptOriginals> kept_;
    std::optional<OutputGuard> guard_;
    std::mutex guardLock_; ///< for its coming and going, of which `stillAtWork` knows nothing
    std::optional<FileIdentity> before_; ///< the source when the work began
    QString temporary_;
    QString unproven_;      ///< why the sound could not be compared
    bool proven_ = false;   ///< it has been compared, and is the same
    bool untagged_ = false; ///< the tags could not be written
    QStringList losses_;
    bool damaged_ = false;
    std::atomic<bool> abandoned_ = false;
};

/// Removes an original as the settings say and looks whether it has gone; a sentence if it has not.
QString deleteOriginal(const QString& path, const Settings& settings, DesktopServices& desktop);

} // namespace quav
