#include "checksums/ChecksumOptions.h"

#include "app/OptionValues.h"

namespace quav {

bool ChecksumOptions::isCreating(const OptionValues& values, const ListFacts& /*facts*/) {
    return values[checksumOptions().command] == ChecksumCommand::Create;
}

bool ChecksumOptions::isVerifying(const OptionValues& values, const ListFacts& /*facts*/) {
    return values[checksumOptions().command] == ChecksumCommand::Verify;
}

const ChecksumOptions& checksumOptions() {
    static const ChecksumOptions options;
    return options;
}

} // namespace quav
