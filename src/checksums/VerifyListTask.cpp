#include "checksums/VerifyListTask.h"

#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quav {

VerifyListTask::VerifyListTask(TaskHost& queue, const QString& fileName,
                               const std::shared_ptr<QUAVTaskResults>& results, ChecksumKind kind)
    : BackgroundTask(queue), fileName_(fileName), kind_(kind) {
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

void VerifyListTask::doStartTask() {
    showProgress(status(), 0);
    results()->appendResults(
        QStringLiteral("Verify %1: %2\n").arg(checksumfiles::title(kind_), title()), *this);
    const checksumlist::List list = readList();
    if (!list.lines.empty()) {
        warnOfStrangeNames(list);
        check(list);
    }
    if (!stopRequested()) {
        results()->appendVerdicts(std::move(verdicts_), *this);
    }
}

void VerifyListTask::listIsEmpty() {}

checksumlist::List VerifyListTask::readList() {
    const auto bytes = checksumlist::contentsOf(fileName_);
    const QString text = bytes ? checksumlist::decoded(*bytes, reading_) : QString();
    checksumlist::List list = checksumlist::read(kind_, text, reading_);
    if (text.isEmpty()) {
        listIsEmpty();
    }
    if (list.lines.empty()) {
        const QString reason = bytes ? whyNothingIsNamed(*bytes) : bytes.error();
        addWarning(reason);
        verdicts_.push_back({fileName_, fileName_, Verdict::Kind::Unreadable, {}, {}, reason});
    } else if (isTolerant()) {
        sayHowItIsRead(*bytes);
    }
    return list;
}

QString VerifyListTask::whyNothingIsNamed(const QByteArray& bytes) const {
    return checksumlist::isUtf8(bytes)
               ? tr("“%1” names no file").arg(fileName_)
               : tr("“%1” is not in UTF-8; it can be read when other spellings are accepted")
                     .arg(fileName_);
}

void VerifyListTask::sayHowItIsRead(const QByteArray& bytes) {
    if (checksumlist::kindByName(fileName_) != kind_) {
        say(tr("%1 : read as %2 (read strictly: no list of this kind)")
                .arg(title(), checksumfiles::title(kind_)));
    }
    if (!checksumlist::isUtf8(bytes)) {
        say(tr("%1 : read although it is not in UTF-8 (read strictly: empty)").arg(title()));
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

QString VerifyListTask::joined(const QString& name) const {
    const auto first =
        std::find_if(name.begin(), name.end(), [](QChar character) { return character != u'/'; });
    return joinPath(folderOf(fileName_), name.mid(first - name.begin()));
}

QString VerifyListTask::strictPath(const Line& line) const {
    return line.strict ? joined(line.strict->name) : QString();
}

QString VerifyListTask::pathOf(const Line& line) const {
    QString path = joined(line.entry->name);
    QString asWritten = strictPath(line);
    const bool takesStrict = !QFileInfo::exists(path) && QFileInfo::exists(asWritten);
    return !isTolerant() || takesStrict ? asWritten : path;
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
    conclude(line.text, invalidFormat(), invalidFormat(),
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
