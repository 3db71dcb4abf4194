"""The sound of audio files as somebody sees it who shares no code with the program: WAV and AIFF read
here, FLAC decoded by `flac`. Also makes such files."""

import hashlib
import itertools
import random
import struct
import subprocess
from dataclasses import dataclass
from pathlib import Path


class Unclear(Exception):
    """Why nobody can say for sure what the sound of a file is."""


@dataclass(frozen=True)
class Sound:
    channels: int
    bits: int
    rate: int
    samples: bytes  # digest of the samples, signed and little-endian


def sound(channels, bits, rate, samples):
    return Sound(channels, bits, rate, hashlib.md5(samples).digest())


def samples(frames, channels, bits, seed):
    """Signed and little-endian: full scale first, so that wrong signs show, then a walk that is like
    music to an encoder."""
    chance = random.Random(seed)
    top = (1 << bits - 1) - 1
    walk = itertools.accumulate(chance.choices(range(-900, 901), k=frames * channels),
                                lambda level, step: level - level // 32 + step)
    values = [top, -top - 1, *walk][:frames * channels]
    return b"".join(value.to_bytes(bits // 8, "little", signed=True) for value in values)


def wav(channels, bits, rate, data):
    align = channels * bits // 8
    return (b"RIFF" + struct.pack("<I", 36 + len(data)) + b"WAVEfmt " +
            struct.pack("<IHHIIHH", 16, 1, channels, rate, rate * align, align, bits) +
            b"data" + struct.pack("<I", len(data)) + data)


def swapped(data, width):
    out = bytearray(data)
    for at in range(width):
        out[at::width] = data[width - 1 - at::width]
    return bytes(out)


def aiff(channels, bits, rate, data):
    align = channels * bits // 8
    exponent = rate.bit_length() - 1
    extended = struct.pack(">HQ", 16383 + exponent, rate << 63 - exponent)
    common = struct.pack(">HIH", channels, len(data) // align, bits) + extended
    body = (b"AIFFCOMM" + struct.pack(">I", 18) + common +
            b"SSND" + struct.pack(">III", 8 + len(data), 0, 0) + swapped(data, bits // 8))
    return b"FORM" + struct.pack(">I", len(body)) + body


def without_padding(data, bits):
    """Little-endian samples whose bits fill their bytes from the top; those below are no sound."""
    width = (bits + 7) // 8
    if bits % 8 == 0:
        return data
    return b"".join((int.from_bytes(data[at:at + width], "little", signed=True) >> 8 * width - bits)
                    .to_bytes(width, "little", signed=True) for at in range(0, len(data), width))


def chunks(data, order, exact):
    """The chunks of a RIFF or FORM file by name; each byte of it has to belong to one."""
    if exact and struct.unpack(order + "I", data[4:8])[0] + 8 != len(data):
        raise Unclear("its header tells another size")
    found, at = {}, 12
    while at < len(data):
        name, size = data[at:at + 4], data[at + 4:at + 8]
        if len(size) < 4 or not all(0x20 <= letter < 0x7F for letter in name):
            raise Unclear("something is behind its chunks")
        size = struct.unpack(order + "I", size)[0]
        if at + 8 + size > len(data):
            raise Unclear("it ends within a chunk")
        if name in found:
            raise Unclear("a chunk comes twice")
        found[name] = data[at + 8:at + 8 + size]
        at += 8 + size + size % 2
    return found


def of_wav(data, exact=False):
    if data[:4] != b"RIFF" or data[8:12] != b"WAVE":
        raise Unclear("it is no WAV file")
    found = chunks(data, "<", exact)
    form, body = found.get(b"fmt ", b""), found.get(b"data")
    if len(form) < 16 or body is None:
        raise Unclear("a chunk is missing")
    tag, channels, rate, _, align, bits = struct.unpack("<HHIIHH", form[:16])
    if tag not in (1, 0xFFFE) or not channels or not bits or align != channels * ((bits + 7) // 8):
        raise Unclear("its format makes no sense")
    if len(body) % align:
        raise Unclear("it ends within a frame")
    signed = body if bits > 8 else bytes(byte ^ 0x80 for byte in body)
    return sound(channels, bits, rate, without_padding(signed, bits))


def of_aiff(data, exact=False):
    if data[:4] != b"FORM" or data[8:12] != b"AIFF":
        raise Unclear("it is no AIFF file")
    found = chunks(data, ">", exact)
    common, body = found.get(b"COMM", b""), found.get(b"SSND", b"")
    if len(common) < 18 or len(body) < 8:
        raise Unclear("a chunk is missing")
    channels, frames, bits, exponent, mantissa = struct.unpack(">HIHHQ", common[:18])
    rate = mantissa >> (63 - (exponent - 16383)) if 16383 <= exponent <= 16383 + 63 else 0
    width = (bits + 7) // 8
    if body[:8] != bytes(8) or not channels or not bits:
        raise Unclear("its format makes no sense")
    if len(body) - 8 != frames * channels * width:
        raise Unclear("its header tells another length")
    return sound(channels, bits, rate, without_padding(swapped(body[8:], width), bits))


def of_flac(path):
    data = Path(path).open("rb").read(42)
    if data[:4] != b"fLaC" or data[4] & 0x7F:
        raise Unclear("it is no FLAC file")
    fields = int.from_bytes(data[18:26], "big")
    rate, channels, bits, frames = (fields >> 44, (fields >> 41 & 7) + 1, (fields >> 36 & 31) + 1,
                                    fields & (1 << 36) - 1)
    done = subprocess.run(["flac", "-dcs", "--force-raw-format", "--endian=little", "--sign=signed", path],
                          capture_output=True, check=False, timeout=120)
    if done.returncode:
        raise Unclear("flac cannot decode it")
    if len(done.stdout) != frames * channels * ((bits + 7) // 8):
        raise Unclear("its header tells another length")
    return sound(channels, bits, rate, done.stdout)


def of_output(path):
    """The sound of a file that has to be right in every respect."""
    if path.suffix == ".flac":
        return of_flac(path)
    return (of_wav if path.suffix == ".wav" else of_aiff)(path.read_bytes(), exact=True)


def make(path, channels, bits, rate, data):
    """Writes a file of the format that its name tells."""
    if path.suffix == ".flac":
        subprocess.run(["flac", "-s", "-f", "--force-raw-format", "--endian=little", "--sign=signed",
                        f"--channels={channels}", f"--bps={bits}", f"--sample-rate={rate}", "-o", path, "-"],
                       input=data, check=True)
    else:
        path.write_bytes((wav if path.suffix == ".wav" else aiff)(channels, bits, rate, data))
