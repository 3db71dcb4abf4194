#include "checksums/NameLookup.h"

#include "platform/PathNames.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quav {

namespace {

QString composed(const QString& name) {
    return name.normalized(QString::NormalizationForm_C);
}

QString withoutCase(const QString& name) {
    return composed(composed(name).toCaseFolded());
}

void enter(QHash<QString, QString>& names, const QString& key, const QString& name) {
    const auto known = names.find(key);
    if (known == names.end()) {
        names.insert(key, name);
    } else {
        known->clear();
    }
}

} // namespace

QString NameLookup::joined(const QString& name) const {
    const auto first =
        std::find_if(name.begin(), name.end(), [](QChar character) { return character != u'/'; });
    return joinPath(folder_, name.mid(first - name.begin()));
}

QString NameLookup::find(const QStringList& names) {
    for (const QString& name : names) {
        QString path = joined(name);
        if (QFileInfo::exists(path)) {
            return path;
        }
    }
    for (const QString& name : names) {
        if (const auto path = findOtherwise(name)) {
            return *path;
        }
    }
    return joined(names.value(0));
}

std::optional<QString> NameLookup::findOtherwise(const QString& name) {
    QString path = folder_;
    for (const QString& part : name.split(u'/', Qt::SkipEmptyParts)) {
        if (part == u"..") {
            return std::nullopt; // one folder would have as many paths as there are detours
        }
        if (part == u".") {
            continue;
        }
        QString next = joinPath(path, part);
        if (!QFileInfo::exists(next)) {
            const QString real = realName(path, part);
            if (real.isEmpty()) {
                return std::nullopt;
            }
            next = joinPath(path, real);
        }
        path = next;
    }
    return path;
}

/// The one name of the folder that is the same in another spelling; empty when there is none.
QString NameLookup::realName(const QString& folder, const QString& name) {
    const Names& names = namesIn(folder);
    const auto sameForm = names.byForm.constFind(composed(name));
    return sameForm != names.byForm.constEnd() ? *sameForm : names.byCase.value(withoutCase(name));
}

const NameLookup::Names& NameLookup::namesIn(const QString& folder) {
    // Links that lead back to where they lie give one folder any number of paths.
    const QString real = QFileInfo(folder).canonicalFilePath();
    auto known = folders_.find(real);
    if (known == folders_.end()) {
        known = folders_.insert(real, {});
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QString& name : QDir(real).entryList(all, QDir::Unsorted)) {
            enter(known->byForm, composed(name), name);
            enter(known->byCase, withoutCase(name), name);
        }
    }
    return *known;
}

} // namespace quav
