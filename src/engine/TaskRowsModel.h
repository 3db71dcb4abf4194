#pragma once

#include "engine/QUAVTask.h"

#include <QAbstractListModel>
#include <QTimer>

#include <memory>
#include <unordered_map>
#include <vector>

namespace quav {

/// The rows of the status list, one a task, as a model. Changes of a row reach the views at most
/// some thirty times a second, however often the task reports them.
class TaskRowsModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// What a cancel has come to.
    enum CancelState {
        NotCanceled,
        Canceling, ///< what runs is still finishing
        Canceled,
    };

    enum Role {
        StatusLineRole = Qt::UserRole + 1,
        MainLineColourRole, ///< a TaskRow::Colour as int
        BarValueRole,       ///< 0 to 100
        BarVisibleRole,
        BarDeterminateRole,
        BarAnimatedRole,
        CancelButtonVisibleRole,
        StalledRole,     ///< whether a tool does nothing any more and can be ended
        CancelStateRole, ///< a CancelState as int
    };

    using Tasks = std::vector<std::shared_ptr<QUAVTask>>;

    explicit TaskRowsModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The main line is the display text.
    QVariant data(const QModelIndex& index, int role) const override;

    void append(const std::shared_ptr<QUAVTask>& task);
    /// Shows these tasks, in this order, and no others.
    void replace(Tasks tasks);

    /// The task in a row, or none.
    std::shared_ptr<QUAVTask> taskAt(int row) const;

    /// The row of a task; one behind all others when it has none.
    int rowOf(const QUAVTask& task) const;

    void markChanged(const QUAVTask& task);

private:
    void announceChanges();

    Tasks tasks_;
    std::unordered_map<const QUAVTask*, int> rowOf_;
    std::vector<const QUAVTask*> changed_;
    QTimer timer_;
};

} // namespace quav
