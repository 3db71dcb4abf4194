#pragma once

namespace quav {

/// What is spoken to through its virtual functions, whoever stands behind them. Not copied.
class Interface {
public:
    virtual ~Interface() = default;
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

protected:
    Interface() = default;
};

} // namespace quav
