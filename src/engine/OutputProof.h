#pragma once

#include <QString>

namespace quav {

/// What is known of the sound of an output against that of its source.
struct OutputProof {
    bool isSameSound = false; ///< both were decoded and compared
    QString whyNot;           ///< why they could not be compared, where that was asked for
};

} // namespace quav
