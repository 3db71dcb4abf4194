#include "shntool/Modes.h"

#include <array>

namespace quav::shntool {

namespace {

constexpr std::array<Mode, 13> all{{
    {.name = "len",
     .description = "Lists lengths, sizes and properties of audio files",
     .reads = true,
     .writes = false,
     .letters = "U:ctu:",
     .help = "  -U UNIT  unit of the total size: b (usual), kb, mb, gb or tb\n"
             "  -c       no column names\n"
             "  -t       no totals\n"
             "  -u UNIT  unit of the files' sizes\n",
     .run = runLen},
    {.name = "info",
     .description = "Tells all about audio files",
     .reads = true,
     .writes = false,
     .letters = "",
     .help = "",
     .run = runInfo},
    {.name = "cmp",
     .description = "Compares the samples of two files",
     .reads = true,
     .writes = false,
     .letters = "c:f:ls",
     .help = "  -c SECS  how much to search for a shift: 3 seconds unless given\n"
             "  -f FUZZ  how many bytes may differ in what is searched\n"
             "  -l       list all bytes that differ\n"
             "  -s       look whether one file only begins later than the other\n",
     .run = runCmp},
    {.name = "conv",
     .description = "Converts files to another format",
     .reads = true,
     .writes = true,
     .letters = "n:",
     .help = "  -n NAME  the output's name; for one file\n",
     .run = runConv},
    {.name = "fix",
     .description = "Moves the boundaries of a set of CD tracks to sector boundaries",
     .reads = true,
     .writes = true,
     .letters = "bcfknu",
     .help = "  -b       to the sector boundary before (usual)\n"
             "  -c       only tell by the exit status: 0 when there is something to fix\n"
             "  -f       to the sector boundary behind\n"
             "  -k       write the tracks that would not change at the beginning, too\n"
             "  -n       do not pad the last track with silence\n"
             "  -u       to the nearest sector boundary\n",
     .run = runFix},
    {.name = "hash",
     .description = "Makes digests of the samples, whatever the format around them",
     .reads = true,
     .writes = false,
     .letters = "cms",
     .help = "  -c       one digest of all files together\n"
             "  -m       MD5 (usual)\n"
             "  -s       SHA-1\n",
     .run = runHash},
    {.name = "join",
     .description = "Joins files to one",
     .reads = true,
     .writes = true,
     .letters = "ben",
     .help = "  -b       pad at the beginning, with silence up to a sector boundary\n"
             "  -e       pad at the end (usual)\n"
             "  -n       do not pad\n",
     .run = runJoin},
    {.name = "pad",
     .description = "Pads CD tracks with silence up to a sector boundary",
     .reads = true,
     .writes = true,
     .letters = "be",
     .help = "  -b       at the beginning\n"
             "  -e       at the end (usual)\n",
     .run = runPad},
    {.name = "split",
     .description = "Splits a file",
     .reads = true,
     .writes = true,
     .letters = "c:e:f:l:m:n:t:u:x:",
     .help = "  -c NUM   number of the first piece\n"
             "  -e LEN   let pieces begin so much earlier, in the piece before\n"
             "  -f FILE  split points, one on each line, or a cue sheet\n"
             "  -l LEN   split into pieces of this length\n"
             "  -m TEXT  replace characters in names: pairs of old and new ones\n"
             "  -n FMT   how numbers are written: %02d unless given\n"
             "  -t FMT   names from the cue sheet: %p performer, %a album, %t title,\n"
             "           %n number\n"
             "  -u LEN   let pieces end so much later, in the piece behind\n"
             "  -x LIST  only write these pieces, as 2-6,9\n"
             "\n"
             "LEN and split points are bytes, m:ss, m:ss.ff (75 frames a second) or\n"
             "m:ss.nnn. Without -f and -l the points are read from standard input.\n",
     .run = runSplit},
    {.name = "strip",
     .description = "Strips WAV files of further chunks and makes their headers canonical",
     .reads = true,
     .writes = true,
     .letters = "ce",
     .help = "  -c       keep further chunks\n"
             "  -e       keep the header\n",
     .run = runStrip},
    {.name = "trim",
     .description = "Trims silence from the ends of files",
     .reads = true,
     .writes = true,
     .letters = "be",
     .help = "  -b       only at the beginning\n"
             "  -e       only at the end\n",
     .run = runTrim},
    {.name = "cue",
     .description = "Makes a cue sheet for files that are to be joined",
     .reads = true,
     .writes = false,
     .letters = "cs",
     .help = "  -c       a cue sheet (usual)\n"
             "  -s       split points in bytes\n",
     .run = runCue},
    {.name = "gen",
     .description = "Generates silence of CD quality",
     .reads = false,
     .writes = true,
     .letters = "l:",
     .help = "  -l LEN   length: bytes, m:ss, m:ss.ff or m:ss.nnn\n",
     .run = runGen},
}};

} // namespace

std::span<const Mode> modes() {
    return all;
}

} // namespace quav::shntool
