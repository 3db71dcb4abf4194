#pragma once

#include "app/Option.h"
#include "checksums/ChecksumFiles.h"

#include <array>

namespace quav {

/// What the checksum tab does with the files in its list: the rows of the choice.
enum class ChecksumCommand { Test, Create, Verify };

/// The options of the checksum tab.
class ChecksumOptions : public OptionTable {
    using Control = OptionInfo::Control;
    using Otherwise = OptionInfo::Otherwise;

    static constexpr const char* commandGroup = QT_TRANSLATE_NOOP("Options", "Command");
    static constexpr const char* createGroup = QT_TRANSLATE_NOOP("Options", "Checksum file");
    static constexpr const char* readingGroup = QT_TRANSLATE_NOOP("Options", "Reading");

public:
    Option<ChecksumCommand> command{
        *this,
        {.key = "commandOptions",
         .control = Control::Choice,
         .group = commandGroup,
         .label = QT_TRANSLATE_NOOP("Options", "Command"),
         .tip = QT_TRANSLATE_NOOP("Options", "What is done with the files in the list"),
         .choices = commands}};
    Option<ChecksumKind> kind{
        *this,
        {.key = "createChecksumOptions",
         .control = Control::Choice,
         .group = createGroup,
         .label = QT_TRANSLATE_NOOP("Options", "Checksum file"),
         .tip = QT_TRANSLATE_NOOP("Options", "md5: of whole files; st5: of their audio, as shntool "
                                             "digests it; ffp: the fingerprints of FLAC files"),
         .flag = "kind",
         .valueName = "KIND",
         .required = true,
         .choices = kinds,
         .applies = isCreating,
         .otherwise = Otherwise::Hidden}};
    Option<bool> sourceSave{
        *this,
        {.key = "sourceSaveButton",
         .control = Control::Switch,
         .group = createGroup,
         .label = QT_TRANSLATE_NOOP("Options", "Save &beside the source files"),
         .tip = QT_TRANSLATE_NOOP("Options", "Write it into the folder of the files, under "
                                             "its usual name; files from several folders "
                                             "need a path all the same"),
         .flag = "beside",
         .applies = isCreating,
         .otherwise = Otherwise::Hidden}};
    /// Whether lists are read that are spelled or named in other ways than our own.
    Option<bool> acceptOtherSpellings{
        *this,
        {.key = "acceptOtherSpellings",
         .control = Control::Switch,
         .group = readingGroup,
         .label = QT_TRANSLATE_NOOP("Options", "Accept &other spellings"),
         .tip = QT_TRANSLATE_NOOP(
             "Options",
             "Also read lists with two blanks, tabs, BSD style, upper-case digests, backslashes or "
             "other encodings, lists under names such as md5sum.txt, texts with several sections, "
             "and names in other capitals; the report says what a strict reader would have found"),
         .flag = "tolerant",
         .applies = isVerifying,
         .otherwise = Otherwise::Hidden}};

private:
    static bool isCreating(const OptionValues& values, const ListFacts& facts);
    static bool isVerifying(const OptionValues& values, const ListFacts& facts);

    static constexpr std::array commands{
        OptionChoice{static_cast<int>(ChecksumCommand::Test), "test",
                     QT_TRANSLATE_NOOP("Options", "&Test files"),
                     QT_TRANSLATE_NOOP("Options", "Decode each FLAC, APE, WV and TTA file without "
                                                  "writing anything"),
                     "flac -t, mac -v, wvunpack -v, ttaenc -t"},
        OptionChoice{
            static_cast<int>(ChecksumCommand::Create), "create",
            QT_TRANSLATE_NOOP("Options", "Create c&hecksum file"),
            QT_TRANSLATE_NOOP("Options", "Write one checksum file over all files in the list")},
        OptionChoice{static_cast<int>(ChecksumCommand::Verify), "verify",
                     QT_TRANSLATE_NOOP("Options", "&Verify checksum files"),
                     QT_TRANSLATE_NOOP("Options",
                                       "Check the files that the MD5, ST5 and FFP files in the "
                                       "list name; they are looked up beside their checksum "
                                       "file")}};
    static constexpr std::array kinds{
        OptionChoice{static_cast<int>(ChecksumKind::Md5), "md5",
                     QT_TRANSLATE_NOOP("Options", "&MD5"),
                     QT_TRANSLATE_NOOP("Options", "A digest of each whole file, of any type")},
        OptionChoice{
            static_cast<int>(ChecksumKind::St5), "st5", QT_TRANSLATE_NOOP("Options", "&ST5"),
            QT_TRANSLATE_NOOP("Options", "A digest of the audio of each file, the same for "
                                         "every lossless format"),
            "shntool hash -m"},
        OptionChoice{static_cast<int>(ChecksumKind::Ffp), "ffp",
                     QT_TRANSLATE_NOOP("Options", "FFP (fin&gerprints)"),
                     QT_TRANSLATE_NOOP("Options",
                                       "The fingerprint that each FLAC file carries of its audio"),
                     "metaflac --show-md5"}};
};

const ChecksumOptions& checksumOptions();

} // namespace quav
