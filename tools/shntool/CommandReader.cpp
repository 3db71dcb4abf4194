#include "shntool/CommandReader.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "shntool/Child.h"

#include <cstddef>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quav::shntool {

using pcm::Failure;

namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

// What another program writes.
class CommandReader final : public pcm::Reader {
public:
    explicit CommandReader(const std::vector<std::string>& command)
        : name_(command.front()), child_(command, Child::Pipe::FromOutput),
          output_(pcm::UniqueFd(::fcntl(child_.fd(), F_DUPFD_CLOEXEC, 3)), name_) {}

    std::size_t read(std::span<std::uint8_t> to) override { return output_.read(to); }

    void finish() override {
        std::vector<std::uint8_t> rest(pieceSize);
        while (output_.read(rest) > 0) {
        }
        if (const int status = child_.wait(); status != 0) {
            throw Failure(Failure::Kind::Input, "decoder: [" + name_ +
                                                    "] had non-zero exit status " +
                                                    std::to_string(status));
        }
    }

private:
    std::string name_;
    Child child_;
    pcm::InputFile output_;
};

} // namespace

audio::OpenSettings openSettings(const std::vector<InputDecoder>& decoders) {
    return {
        .otherDecoder = [decoders](const std::string& format,
                                   const std::string& path) -> std::optional<audio::OtherDecoder> {
            std::optional<InputDecoder> wanted = InputDecoder::fromEnvironment(format);
            for (const InputDecoder& decoder : decoders) {
                if (decoder.format == format) {
                    wanted = decoder;
                }
            }
            if (!wanted) {
                return std::nullopt;
            }
            const std::vector<std::string> command = withFile(wanted->command, path);
            return audio::OtherDecoder{
                command.front(), [command] { return std::make_unique<CommandReader>(command); }};
        },
        .foundChunk = {}};
}

} // namespace quav::shntool
