#include "codecs/ConversionOptions.h"

namespace quav {

using Control = OptionInfo::Control;

ConversionOptions::ConversionOptions(std::initializer_list<const char*> groups,
                                     const char* besideKey, QLatin1StringView besideSetting)
    : OptionTable(groups),
      beside(*this,
             {.key = besideKey,
              .control = Control::Switch,
              .group = optiongroups::output,
              .label = QT_TRANSLATE_NOOP("Options", "&Beside the source files"),
              .tip = QT_TRANSLATE_NOOP("Options", "Write each file beside its source instead "
                                                  "of into one folder for all"),
              .flag = "beside",
              .setting = besideSetting}),
      deleteOriginals(
          *this, {.key = "deleteOriginalsButton",
                  .control = Control::Switch,
                  .group = optiongroups::output,
                  .label = QT_TRANSLATE_NOOP("Options", "Delete the &source files after"),
                  .tip = QT_TRANSLATE_NOOP("Options", "Delete each source once its file is done "
                                                      "without error, has the same sound, and "
                                                      "nothing of it is missing there"),
                  .flag = "delete-originals"}),
      verifyAudio(*this,
                  {.key = "verifyAudio",
                   .control = Control::Switch,
                   .group = optiongroups::output,
                   .label = QT_TRANSLATE_NOOP("Options", "C&ompare the sound after"),
                   .tip = QT_TRANSLATE_NOOP("Options", "Compare the sound of each source and "
                                                       "its file, also when nothing is "
                                                       "deleted"),
                   .flag = "verify-audio"}),
      acceptLosses(*this,
                   {.key = "acceptLosses",
                    .control = Control::Switch,
                    .tip = QT_TRANSLATE_NOOP("Options", "Delete sources although not all of their "
                                                        "tags, pictures and chunks are in their "
                                                        "files"),
                    .flag = "accept-losses"}) {}

OptionInfo ConversionOptions::target(std::span<const OptionChoice> targets) {
    return {.key = "outputFormatMatrix",
            .control = Control::Choice,
            .group = optiongroups::target,
            .label = QT_TRANSLATE_NOOP("Options", "Target"),
            .tip = QT_TRANSLATE_NOOP("Options", "The format of the outputs"),
            .flag = "to",
            .valueName = "FORMAT",
            .required = true,
            .choices = targets};
}

} // namespace quav
