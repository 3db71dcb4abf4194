#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quav::shntool {

/// What a cue sheet says of a track.
struct CueTrack {
    std::string title;
    std::string performer;
    std::string start; ///< of INDEX 01, as m:ss.ff
};

/// Where a user wants a file to be split: places as text, or a cue sheet's tracks.
struct SplitPoints {
    std::vector<std::string> places;
    bool isCueSheet = false;
    std::string album;
    std::string performer; ///< of the whole sheet
    std::vector<CueTrack> tracks;

    /// One place on each line, or a cue sheet: lines of TITLE and PERFORMER, TRACK and INDEX, with
    /// their texts in quotes or without. Any line ends; a byte-order mark in front is left out.
    static SplitPoints parse(const std::string& text);
};

} // namespace quav::shntool
