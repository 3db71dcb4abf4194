#include "engine/TaskRowsModel.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quav {

namespace {

constexpr std::chrono::milliseconds refreshInterval{33};

TaskRowsModel::CancelState cancelState(const QUAVTask& task) {
    if (!task.cancelled()) {
        return TaskRowsModel::NotCanceled;
    }
    // The row is painted for the last time a little later than the task is done.
    return task.isDone() && !task.row().cancelButtonVisible ? TaskRowsModel::Canceled
                                                            : TaskRowsModel::Canceling;
}

/// The status line, beside which a cancelled task has no other place to say what it was about.
QString statusLine(const QUAVTask& task) {
    const TaskRow& row = task.row();
    switch (cancelState(task)) {
    case TaskRowsModel::NotCanceled:
        break;
    case TaskRowsModel::Canceling:
        return TaskRowsModel::tr("Canceling · %1").arg(row.statusLine);
    case TaskRowsModel::Canceled:
        // One that never started has nothing else to tell.
        return row.barVisible ? QStringLiteral("%1 · %2").arg(task.title(), row.statusLine)
                              : task.title();
    }
    return row.statusLine;
}

} // namespace

TaskRowsModel::TaskRowsModel(QObject* parent) : QAbstractListModel(parent) {
    timer_.setSingleShot(true);
    timer_.setInterval(refreshInterval);
    connect(&timer_, &QTimer::timeout, this, &TaskRowsModel::announceChanges);
}

int TaskRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(tasks_.size());
}

QVariant TaskRowsModel::data(const QModelIndex& index, int role) const {
    const auto task = taskAt(index.row());
    if (!task) {
        return {};
    }
    const TaskRow& row = task->row();
    switch (role) {
    case Qt::DisplayRole:
        return row.mainLine;
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2").arg(row.mainLine, statusLine(*task));
    case Qt::ToolTipRole:
        return task->title();
    case StatusLineRole:
        return statusLine(*task);
    case MainLineColourRole:
        return static_cast<int>(row.mainLineColour);
    case BarValueRole:
        return row.barValue;
    case BarVisibleRole:
        return row.barVisible;
    case BarDeterminateRole:
        return row.barDeterminate;
    case BarAnimatedRole:
        return row.barAnimated;
    case CancelButtonVisibleRole:
        return row.cancelButtonVisible;
    case StalledRole:
        return row.stalled;
    case CancelStateRole:
        return cancelState(*task);
    default:
        return {};
    }
}

void TaskRowsModel::append(const std::shared_ptr<QUAVTask>& task) {
    const int row = rowCount();
    beginInsertRows({}, row, row);
    tasks_.push_back(task);
    rowOf_[task.get()] = row;
    endInsertRows();
}

void TaskRowsModel::replace(Tasks tasks) {
    beginResetModel();
    tasks_ = std::move(tasks);
    rowOf_.clear();
    for (size_t row = 0; row < tasks_.size(); ++row) {
        rowOf_[tasks_[row].get()] = static_cast<int>(row);
    }
    endResetModel();
}

std::shared_ptr<QUAVTask> TaskRowsModel::taskAt(int row) const {
    return row >= 0 && row < rowCount() ? tasks_[static_cast<size_t>(row)] : nullptr;
}

int TaskRowsModel::rowOf(const QUAVTask& task) const {
    const auto found = rowOf_.find(&task);
    return found == rowOf_.end() ? rowCount() : found->second;
}

void TaskRowsModel::markChanged(const QUAVTask& task) {
    changed_.push_back(&task);
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void TaskRowsModel::announceChanges() {
    std::vector<int> rows;
    for (const QUAVTask* task : std::exchange(changed_, {})) {
        // The row may have gone since.
        if (const auto found = rowOf_.find(task); found != rowOf_.end()) {
            rows.push_back(found->second);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (auto first = rows.begin(); first != rows.end();) {
        auto last = first;
        while (std::next(last) != rows.end() && *std::next(last) == *last + 1) {
            ++last;
        }
        Q_EMIT dataChanged(createIndex(*first, 0), createIndex(*last, 0));
        first = std::next(last);
    }
}

} // namespace quav
