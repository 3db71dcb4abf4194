#include "engine/OutputGuard.h"

#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <stdexcept>
#include <utility>

namespace quav {

OutputGuard::OutputGuard(QString output, const QString& source, Existing existing)
    : output_(std::move(output)) {
    if (!QFileInfo::exists(output_)) {
        return;
    }
    if (existing == Existing::Keep || !QFileInfo(output_).isFile() || isSameFile(output_, source)) {
        foreign_ = true;
        return;
    }
    // A name of its own and not one made from the output's, which may be as long as names can be.
    const QString name = QStringLiteral(".quav-%1").arg(QUuid::createUuid().toString(QUuid::Id128));
    const QString aside = joinPath(folderOf(output_), name);
    if (!QFile::rename(output_, aside)) {
        throw std::runtime_error(
            QCoreApplication::translate("OutputGuard", "“%1” could not be put aside")
                .arg(output_)
                .toStdString());
    }
    putAside_ = aside;
}

OutputGuard::~OutputGuard() {
    rollBack();
}

bool OutputGuard::producedHere() const {
    return !foreign_ && QFileInfo::exists(output_);
}

void OutputGuard::commit() {
    if (!std::exchange(settled_, true) && !putAside_.isEmpty()) {
        QFile::remove(putAside_);
    }
}

QString OutputGuard::rollBack() {
    if (std::exchange(settled_, true) || foreign_) {
        return {};
    }
    QFile::remove(output_);
    if (putAside_.isEmpty() || QFile::rename(putAside_, output_)) {
        return {};
    }
    return putAside_;
}

} // namespace quav
