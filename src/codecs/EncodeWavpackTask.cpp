#include "codecs/EncodeWavpackTask.h"

#include "codecs/WavpackTool.h"
#include "tags/TagLibTagsHelper.h"

#include <QCoreApplication>

#include <utility>

namespace quav {

EncodeWavpackTask::EncodeWavpackTask(const Job& job, const Services& services,
                                     std::shared_ptr<QUAVTaskResults> results)
    : EncoderTask(job, services, std::move(results),
                  {QStringLiteral("wavpack"),
                   {QCoreApplication::translate("EncodeWavpackTask", "Encoding Wavpack"),
                    QCoreApplication::translate("EncodeWavpackTask", "Encoding to Wavpack: %1%"),
                    wavpack::read}}) {}

TagResult EncodeWavpackTask::writeTags(TagLibTagsHelper& writer, const TagsObject& tags) {
    return writer.writeTagsForWavpackFile(outFile(), tags, false);
}

} // namespace quav
