#include "workbench/TabTable.h"

#include "app/FileKinds.h"
#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"
#include "codecs/DecodeOptions.h"
#include "codecs/DecodeTab.h"
#include "codecs/EncodeOptions.h"
#include "codecs/EncodeTab.h"

#include <QCoreApplication>

namespace quav {

namespace {

template <class Tab>
std::unique_ptr<BaseTab> made(const Services& services) {
    return std::make_unique<Tab>(services);
}

} // namespace

QString TabRow::title() const {
    return QCoreApplication::translate("Tabs", name);
}

const std::vector<TabRow>& tabTable() {
    static const std::vector<TabRow> table{
        {tabs::decode, QT_TRANSLATE_NOOP("Tabs", "decode"), "audio-x-generic", "decode",
         made<DecodeTab>, &decodeOptions()},
        {tabs::encode, QT_TRANSLATE_NOOP("Tabs", "encode"), "package-x-generic", "encode",
         made<EncodeTab>, &encodeOptions()},
        {tabs::checksum, QT_TRANSLATE_NOOP("Tabs", "checksum"), "security-high", "checksum",
         made<ChecksumTab>, &checksumOptions()},
        {tabs::about, QT_TRANSLATE_NOOP("Tabs", "about"), "help-about", nullptr, nullptr, nullptr},
    };
    return table;
}

} // namespace quav
