#pragma once

#include <QString>

class QWidget;

namespace quav {

class BaseTab;

/// The page of the tab with this label. `tab` is null for one that does no work.
QWidget* makePage(const QString& label, BaseTab* tab);

} // namespace quav
