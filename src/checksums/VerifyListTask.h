#pragma once

#include "checksums/ChecksumList.h"
#include "checksums/NameLookup.h"
#include "engine/BackgroundTask.h"
#include "engine/Verdict.h"
#include "platform/OrderedWork.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace quav {

class QUAVTaskResults;

/// Checks the files that a checksum file names, and reports one line an entry. What all three kinds
/// share: the list and where its files lie, the report in one piece at the end, the verdicts beside
/// it, and an early end between two entries when the user cancels.
class VerifyListTask : public BackgroundTask {
    Q_DECLARE_TR_FUNCTIONS(VerifyListTask)

public:
    /// `fileName` is the checksum file. The caller enters the task into the results.
    VerifyListTask(TaskHost& queue, const QString& fileName,
                   const std::shared_ptr<QUAVTaskResults>& results, ChecksumKind kind);

    /// The checksum file.
    const QString& fileName() const { return fileName_; }
    QString source() const override { return fileName_; }

    /// How the list is read, strictly unless said. Entries of other kinds that it has then are for
    /// other tasks.
    void setReading(checksumlist::Reading reading) { reading_ = reading; }

    /// The tools that a list of the kind cannot be verified without.
    static QStringList toolsFor(ChecksumKind kind);

protected:
    using Line = checksumlist::Line;

    void doStartTask() override;

    /// Checks the files of the list, which names one at least.
    virtual void check(const checksumlist::List& list) = 0;

    /// What is to be done about a list that cannot be read or is empty, beyond telling the user.
    virtual void listIsEmpty();

    /// The path that the strict reading finds for an entry; empty for a line that is none to it.
    QString strictPath(const Line& line) const;

    /// Where the file of an entry lies: its name joined to the list's folder, whatever it begins
    /// with. Read tolerantly, a name that is not there gives way to the strict reading of it, then
    /// to other spellings on the disk.
    QString pathOf(const Line& line) const;

    /// Has the files of all entries read, several at a time, and the results taken in the order of
    /// the list; lines that are no entries are concluded. Ends early when the user cancels.
    template <typename Result>
    void readEach(
        const checksumlist::List& list, const std::function<Result(const QString& path)>& read,
        const std::function<void(size_t index, const QString& path, const Result& result)>& take) {
        OrderedWork<Result>::run(
            list.lines.size(), queue().toolsAtOnce(),
            [&](size_t index) {
                const Line& line = list.lines[index];
                return line.entry && !stopRequested() ? read(pathOf(line)) : Result();
            },
            [&](size_t index, const Result& result) {
                const Line& line = list.lines[index];
                if (stopRequested()) {
                    return false;
                }
                if (line.entry) {
                    take(index, pathOf(line), result);
                } else {
                    concludeInvalid(line);
                }
                return true;
            });
    }

    /// Adds a line to the report.
    void say(const QString& text);

    /// Adds "NAME : WORDS" to the report, and the verdict. `strictWords` is what the strict reading
    /// comes to; when it is something else, the report says so, too.
    void conclude(const QString& name, const QString& words, const QString& strictWords,
                  const Verdict& verdict);

    /// The same for a line that is no entry.
    void concludeInvalid(const Line& line);

    void showEntry(const QString& name, size_t number, qsizetype count);

    /// Puts what was said so far into the task's results; only "Canceled" when the user cancelled.
    void deliver();

    static QString invalidFormat() { return QStringLiteral("Invalid checksum format"); }

    bool isTolerant() const { return reading_ == checksumlist::Reading::Tolerant; }
    Verdicts& verdicts() { return verdicts_; }

private:
    QString status() const;
    void requireTools();
    checksumlist::List readList();
    void lookUp(checksumlist::List& list);
    QString whyNothingIsNamed(const QByteArray& bytes) const;
    void sayHowItIsRead(const checksumlist::List& list, const QByteArray& bytes);
    void warnOfStrangeNames(const checksumlist::List& list);
    void noteOtherSpellings(const checksumlist::List& list);

    QString fileName_;
    ChecksumKind kind_;
    checksumlist::Reading reading_ = checksumlist::Reading::Strict;
    NameLookup lookup_; ///< looks up on the task's own thread, joins names on any
    QString report_;
    Verdicts verdicts_;
};

} // namespace quav
