#pragma once

#include <QString>

#include <tl/expected.hpp>

#include <functional>

namespace quav {

/// Formats of samples as they are, which this program writes itself.
enum class PlainFormat : unsigned char { Wav, Aiff };

/// Told how much is done, from 0 to 1; gives whether to go on.
using ConversionProgress = std::function<bool(double share)>;

/// Writes the sound of a file of any format without loss that our readers know to `output`, sample
/// for sample, as a file that appears whole or not at all. A file that stands there is kept unless
/// it is empty. The error is a sentence for the user; empty when `progress` had it stopped. Any
/// thread.
tl::expected<void, QString> convertSound(const QString& source, const QString& output,
                                         PlainFormat format, const ConversionProgress& progress);

} // namespace quav
