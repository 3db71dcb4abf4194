#pragma once

#include <QWidget>

namespace quav {

/// What the program is, and which version of it.
class AboutPage : public QWidget {
    Q_OBJECT

public:
    explicit AboutPage(QWidget* parent = nullptr);
};

} // namespace quav
