#pragma once

#include "app/Services.h"
#include "engine/FileConversion.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "tags/Losses.h"
#include "tags/TagResult.h"

#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace quav {

/// A task of any kind, `Task`, that turns one file into another. What makes that safe is the
/// conversion's; here stands what such tasks share beside it.
template <typename Task>
class Converting : public Task {
public:
    const QString& fileName() const { return conversion_.source(); }
    QString source() const override { return conversion_.source(); }
    QString output() const override { return conversion_.output(); }

    FileConversion& conversion() { return conversion_; }
    const FileConversion& conversion() const { return conversion_; }

    void abandon() override {
        conversion_.abandon();
        Task::abandon();
    }
    void stillAtWork() override { conversion_.stillAtWork(); }

protected:
    /// `more` is what the task's constructor takes behind the queue.
    template <typename... More>
    Converting(const QString& source, const QString& output, const Services& services,
               More&&... more)
        : Task(services.queue, std::forward<More>(more)...),
          conversion_(*this, source, output, {services.settings, services.desktop, services.claims},
                      {[this] { return copyTags(); }, lostBetween}) {
        Task::setTitle(lastPathComponent(source));
        Task::setTextFieldString(Task::title());
        Task::setTextFieldValue();
        Task::setWeight(static_cast<double>(std::max<qint64>(1, QFileInfo(source).size())));
    }

    /// Copies the source's tags into the output, on a worker thread. When they could not be
    /// written, the reason in a sentence for the user; what it throws counts as the same.
    virtual TagResult copyTags() = 0;

    /// What the user should know of the tags that were written, in sentences.
    void noteProblems(const QStringList& sentences) {
        for (const QString& sentence : sentences) {
            Task::addWarning(sentence);
        }
    }

    /// What went well has nothing to report.
    void reportFailureAlone() {
        if (!Task::error()) {
            Task::results()->setHasResults(false);
        }
    }

private:
    FileConversion conversion_;
};

} // namespace quav
