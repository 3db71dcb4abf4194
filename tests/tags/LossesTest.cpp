#include "tags/Losses.h"

#include "codecs/DecodeTab.h"
#include "codecs/EncodeTab.h"
#include "support/Bench.h"
#include "support/Table.h"
#include "tags/Id3Bytes.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>

#include <functional>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

/// Makes the source of a conversion at a path.
using Maker = std::function<void(const Bench& bench, const QString& path)>;

QByteArray chunk(const QByteArray& id, const QByteArray& content,
                 QByteArray (*size)(qsizetype) = little) {
    return id + size(content.size()) + content + QByteArray(content.size() % 2, '\0');
}

QByteArray aiffChunk(const QByteArray& id, const QByteArray& content) {
    return chunk(id, content, big);
}

QByteArray text(const QByteArray& id, const QByteArray& value) {
    return frame(id, '\3' + value);
}

QByteArray info(const QByteArray& entries) {
    return chunk("LIST", "INFO" + entries);
}

QByteArray pictureBytes(const char* format, int side, bool isNoise) {
    QImage picture(side, side, QImage::Format_RGB888);
    picture.fill(Qt::red);
    QRandomGenerator random(1);
    for (int y = 0; isNoise && y < side; ++y) {
        std::generate_n(picture.scanLine(y), picture.bytesPerLine(),
                        [&] { return static_cast<uchar>(random.generate()); });
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format, 100);
    return bytes;
}

QByteArray pictureFrame(const QByteArray& picture) {
    return frame("APIC", "\0image/jpeg\0\3\0"_ba + picture);
}

QByteArray pictureBlock(const QByteArray& picture, const QByteArray& description = {}) {
    return big(3) + big(9) + "image/png" + big(description.size()) + description +
           QByteArray(16, '\0') + big(picture.size()) + picture;
}

QByteArray soundOf(const Bench& bench) {
    return contents(bench.wav(u"plain.wav"_s, {.frames = 5000})).mid(44);
}

/// A WAV file with chunks before and behind its sound, and bytes that belong to no chunk.
Maker wav(const QByteArray& front, const QByteArray& behind = {}, const QByteArray& rest = {}) {
    return [=](const Bench& bench, const QString& path) {
        const auto format = "\1\0\2\0\x44\xac\0\0\x10\xb1\2\0\4\0\x10\0"_ba;
        const QByteArray chunks =
            "WAVE" + chunk("fmt ", format) + front + chunk("data", soundOf(bench)) + behind;
        bench.written(path, "RIFF" + little(chunks.size()) + chunks + rest);
    };
}

Maker aiff(const QByteArray& chunks) {
    return [=](const Bench& bench, const QString& path) {
        const QByteArray sound = soundOf(bench);
        const QByteArray format =
            "\0\2"_ba + big(sound.size() / 4) + "\0\x10\x40\x0e\xac\x44\0\0\0\0\0\0"_ba;
        const QByteArray all = "AIFF" + aiffChunk("COMM", format) + chunks +
                               aiffChunk("SSND", QByteArray(8, '\0') + sound);
        bench.written(path, "FORM" + big(all.size()) + all);
    };
}

struct Block {
    char type;
    QByteArray content;
};

/// A FLAC file made by the tool, with these tags and with blocks behind its first one.
Maker flac(const QByteArrayList& tags, const std::vector<Block>& blocks = {},
           const QByteArray& front = {}, const QByteArray& behind = {}) {
    return [=](const Bench& bench, const QString& path) {
        QStringList arguments{u"-s"_s, u"-f"_s, u"-o"_s, bench.path(path)};
        for (const QByteArray& entry : tags) {
            arguments << u"-T"_s << QString::fromUtf8(entry);
        }
        test::run(u"flac"_s, arguments << bench.wav(u"plain.wav"_s, {.frames = 5000}));
        QByteArray bytes = contents(bench.path(path));
        for (const Block& block : blocks) {
            bytes.insert(42, block.type + big(block.content.size()).mid(1) + block.content);
        }
        bench.written(path, front + bytes + behind);
    };
}

/// A FLAC file with the foreign chunks of another file.
Maker flacKeeping(const Maker& source, const QString& name) {
    return [=](const Bench& bench, const QString& path) {
        source(bench, name);
        test::run(u"flac"_s, {u"-s"_s, u"--keep-foreign-metadata"_s, bench.path(name), u"-o"_s,
                              bench.path(path)});
    };
}

Maker both(const Maker& first, const std::function<void(const QString& path)>& second) {
    return [=](const Bench& bench, const QString& path) {
        first(bench, path);
        second(bench.path(path));
    };
}

void importCueSheet(const QString& path) {
    QFile sheet(path + u".cue"_s);
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write("FILE \"x\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    sheet.close();
    QCOMPARE(
        test::run(u"metaflac"_s, {u"--import-cuesheet-from="_s + sheet.fileName(), path}).status,
        0);
}

} // namespace

Q_DECLARE_METATYPE(Maker)

class LossesTest : public QObject {
    Q_OBJECT

private:
    static void conversionRows() {
        columns<Maker, QString, bool, QStringList>("make", "road", "keepForeign", "lost");
    }

private Q_SLOTS:
    void decoding_data() {
        conversionRows();
        const auto lost = [](const char* name, const Maker& make, const QStringList& lostThere,
                             bool keep = false) {
            for (const QString& road : {u"flac wav"_s, u"flac aiff"_s}) {
                row(qPrintable(QString::fromUtf8(name) + u' ' + road), make, road, keep, lostThere);
            }
        };
        const QByteArray red = pictureBytes("PNG", 20, false);
        const QByteArray jpeg = pictureBytes("JPEG", 20, true);
        const QByteArray noise = pictureBytes("PNG", 20, true);

        lost("nothing",
             flac({"TITLE=Größe \U0001F3B5", "artist=A", "ARTIST=B", "ARTIST=A", "DATE=2001",
                   "TRACKNUMBER=03/12", "TRACKTOTAL=12", "DISCNUMBER=1", "TOTALDISCS=", "GENRE=17",
                   "DESCRIPTION=c", "COMMENT=c", "COMPOSER=K", "ALBUMARTIST=Z", "ALBUM=L",
                   "ENCODER=x"},
                  {{6, pictureBlock(jpeg)}}),
             {});
        const auto foreignLetter = [](const QString& path) {
            const QByteArray bytes = contents(path).replace("UMLAUT", "\xc3\x84HEMS");
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        };
        lost("own tags",
             both(flac({"TITLE=t", "Mood=calm", "MOOD=mild", "UMLAUT=x"}), foreignLetter),
             {u"the tag MOOD"_s, u"the tag ÄHEMS"_s});
        lost("month", flac({"DATE=2001-05-07"}), {u"the month of the date"_s});
        lost("unclear date", flac({"DATE=May 2001"}), {u"the tag DATE"_s});
        lost("second date", flac({"DATE=2001", "DATE=1999"}), {u"the value of the tag DATE"_s});
        lost("second values",
             flac({"TRACKNUMBER=1", "TRACKNUMBER=2", "TRACKNUMBER=4", "DISCNUMBER=1",
                   "DISCNUMBER=2"}),
             {u"2 values of the tag TRACKNUMBER"_s, u"1 value of the tag DISCNUMBER"_s});
        lost("other comment", flac({"COMMENT=a", "DESCRIPTION=b"}),
             {u"the value of the tag COMMENT"_s});
        lost("pictures",
             flac({}, {{6, pictureBlock(red)}, {6, pictureBlock(jpeg)}, {6, pictureBlock(noise)}}),
             {u"2 pictures"_s});
        lost("picture in a tag", flac({"METADATA_BLOCK_PICTURE=" + pictureBlock(red).toBase64()}),
             {u"1 picture"_s});
        lost("described picture", flac({}, {{6, pictureBlock(red, "Scan")}}),
             {u"the description of a picture"_s});
        lost("no picture", flac({}, {{6, pictureBlock("none")}}), {u"1 picture"_s});
        lost("cue sheet", both(flac({"CUESHEET=x"}), importCueSheet),
             {u"the tag CUESHEET"_s, u"the cue sheet"_s});
        lost("blocks", flac({}, {{2, "abcdefgh"}, {1, "12345678"}, {100, "new"}}),
             {u"the metadata block of type 100"_s, u"the application block “abcd”"_s});
        lost("ID3v2 in front", flac({"TITLE=t"}, {}, tag(text("TIT2", "u") + text("TCOP", "c"))),
             {u"1 value of the tag TITLE"_s, u"the tag COPYRIGHT"_s});
        const Maker wave = wav(chunk("bext", "who"), info(chunk("IART", "ä")));
        const Maker form = aiff(aiffChunk("ANNO", "who"));
        row("kept chunks of WAV", flacKeeping(wave, u"x.wav"_s), u"flac wav"_s, true,
            QStringList());
        row("kept chunks of AIFF", flacKeeping(form, u"x.aiff"_s), u"flac aiff"_s, true,
            QStringList());
        lost("chunks of WAV left behind", flacKeeping(wave, u"x.wav"_s),
             {u"the INFO entry IART"_s, u"the chunk bext"_s});
        lost("chunks of AIFF left behind", flacKeeping(form, u"x.aiff"_s), {u"the chunk ANNO"_s});
    }
    void decoding() { convert(); }

    void encoding_data() {
        conversionRows();
        const auto wave = [](const char* name, const Maker& make, const QStringList& lost,
                             bool keep = false) { row(name, make, u"wav flac"_s, keep, lost); };
        const auto id3 = [&wave](const char* name, const QByteArray& frames,
                                 const QStringList& lost) {
            wave(name, wav({}, chunk("id3 ", tag(frames))), lost);
        };
        wave("nothing",
             wav(chunk("JUNK", "ab") + chunk("fact", "1234"), info(chunk("ISFT", "x")),
                 QByteArray(3, '\0')),
             {});
        wave("INFO",
             wav(info(chunk("INAM", "Gr\xf6\xdf\x65"_ba) + chunk("ICRD", "2001-05") +
                      chunk("IXXX", "y"))),
             {u"the INFO entry INAM"_s, u"the INFO entry IXXX"_s, u"the INFO entry ICRD"_s});
        wave("INFO and the same in ID3v2",
             wav(info(chunk("INAM", "t\0"_ba) + chunk("ITRK", "3") + chunk("ICRD", "2001")),
                 chunk("ID3 ",
                       tag(text("TIT2", "t") + text("TRCK", "03/9") + text("TDRC", "2001-02-03")))),
             {});
        const Maker recorder =
            wav(chunk("bext", "who") + chunk("cue ", "abc"),
                chunk("LIST", "adtllabl") + chunk("smpl", "x") + chunk("inst", "y"));
        wave("recorder", recorder,
             {u"the chunk bext"_s, u"the chunk cue"_s, u"the chunk LIST adtl"_s,
              u"the chunk smpl"_s, u"the chunk inst"_s});
        wave("kept", recorder, {}, true);
        wave("kept tag and entries",
             wav(info(chunk("IART", "a")), chunk("ID3 ", tag(text("TIT3", "x")))), {}, true);
        wave("behind everything", wav({}, {}, "\1\2\3"_ba), {u"3 bytes behind the last chunk"_s});
        wave("two tags",
             wav(chunk("ID3 ", tag(text("TIT2", "t"))), chunk("id3 ", tag(text("TBPM", "90")))),
             {u"the tag BPM"_s});
        wave("forgotten byte", wav({}, "odd \1\0\0\0x"_ba + chunk("next", "ab")),
             {u"the chunk odd"_s, u"the chunk next"_s});
        wave("wrong size", wav({}, "long\xff\0\0\0x"_ba), {u"the chunk long"_s});

        id3("nothing in ID3v2",
            text("TPE1", "A\0B"_ba) + text("TCON", "17\0Ä"_ba) + text("TYER", "2001") +
                text("TDAT", "0705") + text("TSSE", "x") + frame("COMM", "\3eng\0c"_ba),
            {});
        id3("frames",
            text("TIT3", "s") + frame("TXXX", "\3mood\0calm"_ba) +
                frame("COMM", "\3engiTun\0c"_ba) + frame("USLT", "\3eng\0la"_ba) +
                frame("POPM", "me\0\1"_ba) + frame("PRIV", "own\0x"_ba) + frame("ZZZZ", "z") +
                frame("COMM", "\3deu\0d"_ba) + frame("COMM", "\3eng\0e"_ba),
            {u"the tag TIT3"_s, u"the tag MOOD"_s, u"the comment “iTun”"_s, u"the lyrics"_s,
             u"the rating (POPM)"_s, u"the private data of “own”"_s, u"the tag ZZZZ"_s,
             u"1 value of the tag COMMENT"_s});
        id3("day without month", text("TYER", "2001") + text("TDAT", "072001"),
            {u"the day of the date"_s});
        id3("frames that TagLib gives up at",
            text("TIT2", "t") + frame("TALB", {}) + text("TPE1", "a"),
            {u"a part of an ID3v2 tag that cannot be read"_s});
        id3("too large a picture", pictureFrame(pictureBytes("JPEG", 2500, true)),
            {u"1 picture"_s});
        wave("ID3v2.3",
             wav({}, chunk("ID3 ", tag(text("TYER", "2001").replace('\3', '\0') +
                                           text("TDAT", "0705").replace('\3', '\0'),
                                       3))),
             {});

        const QByteArray marks = aiffChunk("MARK", "m") + aiffChunk("INST", "i") +
                                 aiffChunk("MIDI", "d") + aiffChunk("AESD", "e") +
                                 aiffChunk("APPL", "stoc") + aiffChunk("(c) ", "me");
        row("AIFF",
            aiff(marks + aiffChunk("NAME", "n") + aiffChunk("ID3 ", tag(text("TIT2", "n")))),
            u"aiff flac"_s, false,
            QStringList{u"the chunk (c)"_s, u"the chunk MARK"_s, u"the chunk INST"_s,
                        u"the chunk MIDI"_s, u"the chunk AESD"_s, u"the chunk APPL"_s});
        row("AIFF kept", aiff(marks), u"aiff flac"_s, true, QStringList());
        row("FLAC",
            both(flac({"MOOD=calm", "DATE=x", "ENCODER=y"},
                      {{2, "abcdefgh"}, {6, pictureBlock("p", "d")}}),
                 importCueSheet),
            u"flac flac"_s, false, QStringList());
    }
    void encoding() { convert(); }

    void onlyInTheSource_data() {
        columns<QByteArray, QStringList>("source", "lost");
        const Bench bench;
        const QByteArray sizes = QByteArray(8, '\0') + little(10) + little(0) +
                                 QByteArray(8, '\0') + little(1) + "bext" + little(3) + little(0);
        row("sizes in the chunk ds64",
            "RF64\xff\xff\xff\xffWAVE"_ba + chunk("ds64", sizes) + "data\xff\xff\xff\xff"_ba +
                "bextbextbe" + "bext\xff\xff\xff\xff"_ba + "who\0"_ba + chunk("iXML", "<x/>"),
            QStringList{u"the chunk bext"_s, u"the chunk iXML"_s});
        row("a size that no recorder wrote", "RIFF\0\0\0\0WAVEdata\0\0\0\0bext\1\0\0\0"_ba,
            QStringList());
        flac({}, {}, {}, "APETAGEX" + QByteArray(24, 'x') + "TAG" + QByteArray(125, 'x'))(bench,
                                                                                          u"x"_s);
        row("tags behind a FLAC file", contents(bench.path(u"x"_s)),
            QStringList{u"the ID3v1 tag"_s, u"the APE tag"_s});
    }
    void onlyInTheSource() {
        QFETCH(QByteArray, source);
        const Bench bench;
        flac({})(bench, u"output"_s);
        QTEST(lostBetween(bench.written(u"source"_s, source), bench.path(u"output"_s)), "lost");
    }

    void whatCannotBeReadIsSaid_data() {
        columns<QByteArray, bool>("bytes", "isSource");
        const Bench bench;
        flac({"MOOD=calm"})(bench, u"x"_s);
        const QByteArray whole = contents(bench.path(u"x"_s));
        for (const bool isSource : {true, false}) {
            const auto both = [isSource](const QByteArray& name, const QByteArray& bytes) {
                row((name + (isSource ? " source" : " output")).constData(), bytes, isSource);
            };
            both("empty", {});
            both("text", "Only words.\n");
            both("cut in a block", whole.left(70));
            both("comment with a wrong length", QByteArray(whole)
                                                    .replace("MOOD=", 5, "\0\0\0\0\0", 5)
                                                    .replace("\11\0\0\0", 4, "\11\0\0\7", 4));
            both("tag that goes on", "ID3\4\0\0\x7f\x7f\x7f\x7f"_ba + whole);
            const QByteArray values = "\3x" + "\0y"_ba.repeated(100001);
            both("flood of values", tag(frame("TALB", values)) + whole);
            both("only a tag", tag(text("TIT2", "t")));
        }
    }
    void whatCannotBeReadIsSaid() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isSource);
        const Bench bench;
        flac({})(bench, u"good"_s);
        const QString bad = bench.written(u"bad"_s, bytes);
        const QString good = bench.path(u"good"_s);
        QCOMPARE(isSource ? lostBetween(bad, good) : lostBetween(good, bad),
                 QStringList{u"tags of “bad” that could not be compared"_s});
    }

    void aFloodOfLossesIsCounted() {
        const Bench bench;
        QByteArrayList many;
        for (int i = 0; i < 150; ++i) {
            many << "TAG" + QByteArray::number(i) + "=x";
        }
        flac(many)(bench, u"source"_s);
        flac({})(bench, u"output"_s);
        const auto lost = lostBetween(bench.path(u"source"_s), bench.path(u"output"_s));
        QCOMPARE(lost.size(), 101);
        QCOMPARE(lost.last(), u"50 others"_s);
    }

    void theUserIsToldAndTheSourceStays() {
        Bench bench;
        flac({"MOOD=calm", "DATE=2001-05-07"})(bench, u"ä.flac"_s);
        addFiles(bench.decode, {bench.path(u"ä.flac"_s)});
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.run(bench.decode);
        QVERIFY(bench.workbench.queue().warnings().join(u'\n').contains(
            u"not in the output: the tag MOOD, the month of the date"_s));
        QVERIFY(QFile::exists(bench.path(u"ä.flac"_s)));
    }

private:
    /// By the program itself, from a file with a name of all sorts.
    void convert() {
        QFETCH(Maker, make);
        QFETCH(QString, road);
        QFETCH(bool, keepForeign);
        Bench bench;
        const QString name = u"Größe \"x\"."_s;
        const QString from = road.section(u' ', 0, 0);
        const QString to = road.section(u' ', 1);
        make(bench, name + from);
        if (to == u"flac") {
            addFiles(bench.encode, {bench.path(name + from)});
            bench.encode.options().set(encodeOptions().flacKeepForeignMetadata, keepForeign);
            bench.run(bench.encode);
        } else {
            addFiles(bench.decode, {bench.path(name + from)});
            QVERIFY(bench.decode.options().setForThisRun(decodeOptions().outputFormat.info(), to));
            bench.decode.options().set(decodeOptions().flacKeepForeignMetadata, keepForeign);
            bench.run(bench.decode);
        }
        QCOMPARE(bench.failed, QStringList());
        QTEST(lostBetween(bench.path(name + from), bench.out(name + to)), "lost");
    }
};

QTEST_GUILESS_MAIN(LossesTest)
#include "LossesTest.moc"
