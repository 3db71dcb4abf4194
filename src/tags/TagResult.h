#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace quav {

/// What came of writing tags: all is well, or the reason why not, a sentence for the user.
using TagResult = tl::expected<void, QString>;

} // namespace quav
