#pragma once

#include <QString>

#include <stdexcept>

namespace quav {

/// Raised when a file is not what its tag writer takes it for. `what()` is a translated sentence
/// for the user, in UTF-8.
class TagError : public std::runtime_error {
public:
    explicit TagError(const QString& message);

    static TagError cannotOpenForTagging();
};

} // namespace quav
