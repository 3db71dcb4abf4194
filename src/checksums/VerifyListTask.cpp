#include "checksums/VerifyListTask.h"

#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"

#include <QFileInfo>

#include <stdexcept>
#include <utility>

namespace quav {

VerifyListTask::VerifyListTask(TaskHost& queue, const QString& fileName,
                               const std::shared_ptr<QUAVTaskResults>& results, ChecksumKind kind)
    : BackgroundTask(queue), fileName_(fileName), kind_(kind), lookup_(folderOf(fileName)) {
    setResults(results);
    setTitle(lastPathComponent(fileName));
    setTextFieldString(title());
    setTextFieldValue();
}

QString VerifyListTask::status() const {
    switch (kind_) {
    case ChecksumKind::Md5:
        return tr("Verifying MD5 file");
    case ChecksumKind::St5:
        return tr("Verigying ST5 File");
    case ChecksumKind::Ffp:
        return tr("Verifying FFP");
    }
    return {};
}

QStringList VerifyListTask::toolsFor(ChecksumKind kind) {
    switch (kind) {
    case ChecksumKind::Md5:
        return {};
    case ChecksumKind::St5:
        return {QStringLiteral("shntool")};
    case ChecksumKind::Ffp:
        return {QStringLiteral("metaflac"), QStringLiteral("flac")};
    }
    return {};
}

void VerifyListTask::requireTools() {
    const QStringList missing = queue().toolsFolder().whatIsMissing(toolsFor(kind_));
    if (!missing.isEmpty()) {
        const QString reason = missing.join(u' ');
        results()->appendVerdicts(
            {{fileName_, fileName_, Verdict::Kind::Unreadable, {}, {}, reason}}, *this);
        throw std::runtime_error(reason.toStdString());
    }
}

void VerifyListTask::doStartTask() {
    showProgress(status(), 0);
    results()->appendResults(
        QStringLiteral("Verify %1: %2\n").arg(checksumfiles::title(kind_), title()), *this);
    requireTools();
    const checksumlist::List list = readList();
    if (!list.lines.empty()) {
        warnOfStrangeNames(list);
        check(list);
        noteOtherSpellings(list);
    }
    if (!stopRequested()) {
        results()->appendVerdicts(std::move(verdicts_), *this);
    }
}

void VerifyListTask::listIsEmpty() {}

checksumlist::List VerifyListTask::readList() {
    const auto bytes = checksumlist::contentsOf(fileName_);
    const QString text = bytes ? checksumlist::decoded(*bytes, reading_) : QString();
    checksumlist::List list =
        checksumlist::read(kind_, text, reading_, checksumlist::kindsOf(fileName_, reading_));
    if (text.isEmpty()) {
        listIsEmpty();
    }
    if (list.lines.empty()) {
        const QString reason = bytes ? whyNothingIsNamed(*bytes) : bytes.error();
        addWarning(reason);
        verdicts_.push_back({fileName_, fileName_, Verdict::Kind::Unreadable, {}, {}, reason});
    } else if (isTolerant()) {
        lookUp(list);
        sayHowItIsRead(list, *bytes);
    }
    return list;
}

namespace {

/// The names under which an entry's file is looked for, the most literal one first.
QStringList namesOf(const checksumlist::Entry& entry,
                    const std::optional<checksumlist::Entry>& strict) {
    QStringList names{entry.name};
    if (strict) {
        names << strict->name;
    }
    if (entry.name.startsWith(u'*')) {
        names << entry.name.mid(1); // some write the mark of binary files twice
    }
    return names;
}

} // namespace

void VerifyListTask::lookUp(checksumlist::List& list) {
    for (Line& line : list.lines) {
        if (line.entry && !stopRequested()) {
            line.path = lookup_.find(namesOf(*line.entry, line.strict));
        }
    }
}

QString VerifyListTask::whyNothingIsNamed(const QByteArray& bytes) const {
    return checksumlist::isUtf8(bytes)
               ? tr("“%1” names no file").arg(fileName_)
               : tr("“%1” is not in UTF-8; it can be read with “Accept other spellings” "
                    "(--tolerant)")
                     .arg(fileName_);
}

void VerifyListTask::sayHowItIsRead(const checksumlist::List& list, const QByteArray& bytes) {
    if (checksumlist::kindByName(fileName_) != kind_) {
        say(tr("%1 : read as %2 (read strictly: no list of this kind)")
                .arg(title(), checksumfiles::title(kind_)));
    }
    if (!checksumlist::isUtf8(bytes)) {
        say(tr("%1 : read although it is not in UTF-8 (read strictly: empty)").arg(title()));
    }
    if (list.passedOver > 0) {
        say(tr("%1 : %Ln lines of text passed over", nullptr, static_cast<int>(list.passedOver))
                .arg(title()));
    }
}

void VerifyListTask::warnOfStrangeNames(const checksumlist::List& list) {
    int absolute = 0;
    int upwards = 0;
    for (const Line& line : list.lines) {
        if (line.entry) {
            absolute += line.entry->name.startsWith(u'/') ? 1 : 0;
            upwards += line.entry->name.split(u'/').contains(QStringLiteral("..")) ? 1 : 0;
        }
    }
    const QString folder = folderOf(fileName_);
    if (absolute > 0) {
        addWarning(tr("Names that begin with a slash were looked up below “%1”: %2")
                       .arg(folder, QString::number(absolute)));
    }
    if (upwards > 0) {
        addWarning(tr("Names that lead upwards with “..” were looked up from “%1” on: %2")
                       .arg(folder, QString::number(upwards)));
    }
}

namespace {

/// How many entries another reading would do better with.
struct Misspelt {
    int matching = 0;  ///< the digest is what was found
    int checkable = 0; ///< the file is there; the digest is not known

    QString inWords() const {
        QStringList parts;
        if (matching > 0) {
            parts << VerifyListTask::tr("%Ln entries would match", nullptr, matching);
        }
        if (checkable > 0) {
            parts << VerifyListTask::tr("%Ln files could be found and checked", nullptr, checkable);
        }
        return parts.join(QStringLiteral(", "));
    }
};

/// Whether a file has the digest that a strict reader expects, so that something else is wrong. A
/// folder in front of the name makes the entry another one to him, for some kinds.
bool isStrictlyRight(const checksumlist::Line& line, const Verdict& verdict) {
    return line.strict && line.strict->digest == verdict.found && !line.strict->name.contains(u'/');
}

} // namespace

/// Tells, once for the whole list, that another reading would do better. No file is read for it.
void VerifyListTask::noteOtherSpellings(const checksumlist::List& list) {
    if (isTolerant() || stopRequested() || verdicts_.size() != list.lines.size()) {
        return;
    }
    Misspelt misspelt;
    for (size_t i = 0; i < verdicts_.size() && !stopRequested(); ++i) {
        const Line& line = list.lines[i];
        Verdict& verdict = verdicts_[i];
        const auto other = verdict.kind == Verdict::Kind::Ok || isStrictlyRight(line, verdict)
                               ? std::nullopt
                               : checksumlist::otherReading(kind_, line.text);
        if (!other) {
            continue;
        }
        const QString path = lookup_.find(namesOf(other->entry, line.strict));
        if (path != strictPath(line)) {
            misspelt.checkable += QFileInfo::exists(path) ? 1 : 0;
        } else if (other->kind == kind_ && verdict.found == other->entry.digest) {
            verdict.onlySpelling = true;
            verdict.note += (verdict.note.isEmpty() ? QString() : QStringLiteral("; ")) +
                            tr("it differs only in its spelling");
            ++misspelt.matching;
        }
    }
    if (misspelt.matching + misspelt.checkable > 0) {
        addWarning(tr("“%1”: with “Accept other spellings” (--tolerant), %2")
                       .arg(fileName_, misspelt.inWords()));
    }
}

QString VerifyListTask::strictPath(const Line& line) const {
    return line.strict ? lookup_.joined(line.strict->name) : QString();
}

QString VerifyListTask::pathOf(const Line& line) const {
    return isTolerant() ? line.path : strictPath(line);
}

void VerifyListTask::say(const QString& text) {
    report_ += text + u'\n';
}

void VerifyListTask::conclude(const QString& name, const QString& words, const QString& strictWords,
                              const Verdict& verdict) {
    const bool asStrict = !isTolerant() || words == strictWords;
    say(QStringLiteral("%1 : %2").arg(name, words) +
        (asStrict ? QString() : tr(" (read strictly: %1)").arg(strictWords)));
    verdicts_.push_back(verdict);
}

void VerifyListTask::concludeInvalid(const Line& line) {
    const QString strictWords =
        line.strict ? tr("an entry that nothing can match") : invalidFormat();
    conclude(line.text, invalidFormat(), strictWords,
             {fileName_, line.text, Verdict::Kind::Unreadable, {}, {}, invalidFormat()});
}

void VerifyListTask::showEntry(const QString& name, size_t number, qsizetype count) {
    showCount(tr("Verifying %1").arg(name), static_cast<qsizetype>(number), count);
}

void VerifyListTask::deliver() {
    results()->appendResults(
        stopRequested() ? QStringLiteral("Canceled\n") : std::exchange(report_, {}), *this);
}

} // namespace quav
