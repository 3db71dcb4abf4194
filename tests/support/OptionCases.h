#pragma once

#include "app/TabOptions.h"
#include "checksums/ChecksumOptions.h"
#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"
#include "platform/Settings.h"

#include <QStringList>
#include <QTemporaryDir>

#include <utility>
#include <vector>

namespace quav::test {

using namespace Qt::StringLiterals;

/// What a new option takes: its row here, and its use below.
class DemoOptions : public OptionTable {
public:
    Option<int> depth{*this,
                      {.key = "demoDepth",
                       .control = OptionInfo::Control::Number,
                       .group = "Demonstration",
                       .label = "&Depth",
                       .tip = "How deep to look",
                       .passes = "demo -d",
                       .flag = "depth",
                       .valueName = "N",
                       .setting = keys::maxThreads,
                       .applies = [](const OptionValues&,
                                     const ListFacts& facts) { return facts.hasFormat(u"FLAC"_s); },
                       .otherwise = OptionInfo::Otherwise::Hidden}};
};

inline const DemoOptions& demoOptions() {
    static const DemoOptions options;
    return options;
}

inline QStringList demoCommand(const OptionValues& values) {
    return {u"demo"_s, u"-d"_s, QString::number(values[demoOptions().depth])};
}

/// The options of every tab, by the tab's name.
inline const std::vector<std::pair<QString, const OptionTable*>>& optionTables() {
    static const std::vector<std::pair<QString, const OptionTable*>> all{
        {u"decode"_s, &decodeOptions()},
        {u"encode"_s, &encodeOptions()},
        {u"checksum"_s, &checksumOptions()},
        {u"demo"_s, &demoOptions()}};
    return all;
}

/// Changes the others and the list until an option applies or not; false when nothing does it.
inline bool makeApply(TabOptions& options, const OptionInfo& option, bool applies) {
    ListFacts flac;
    flac.addFormat(u"FLAC"_s);
    for (const ListFacts& facts : {flac, ListFacts()}) {
        options.setFacts(facts);
        for (const OptionInfo& other : options.table().rows()) {
            QVariantList values{options.values().value(other)};
            if (&other != &option && other.control == OptionInfo::Control::Switch) {
                values << false << true;
            }
            for (const OptionChoice& choice : other.choices) {
                values << choice.value;
            }
            for (const QVariant& value : values) {
                options.choose(other, &other == &option ? values.front() : value);
                if (options.applies(option) == applies) {
                    return true;
                }
            }
            options.choose(other, values.front());
        }
    }
    return false;
}

struct OptionPlace {
    QTemporaryDir folder;
    Settings settings{folder.filePath(u"quav.ini"_s)};
};

} // namespace quav::test

Q_DECLARE_METATYPE(const quav::OptionTable*)
Q_DECLARE_METATYPE(const quav::OptionInfo*)
