"""Pictures that are nearly right: samples of all formats, and what becomes of them."""

import struct
import zlib

HEADER = 96  # bytes, in which most formats say how large the picture is
EXTREMES = [0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 24, 31, 32, 33, 64, 85, 127, 128, 255, 256, 257, 1000,
            8191, 8192, 8193, 26000, 32767, 32768, 60000, 65535, 65536, 1 << 24, 60000000,
            0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFE0, 0xFFFFFFFF, 1 << 32,
            (1 << 63) - 1, (1 << 64) - 1]
PNG_LIKE = {b"\x89PNG", b"\x8aMNG", b"\x8bJNG"}


def place_in(random, data):
    """A place, mostly in the header."""
    most = min(len(data), HEADER) if random.random() < 0.6 else len(data)
    return random.randrange(max(1, most))


def change_bytes(random, data, _):
    for _ in range(random.choice([1, 1, 1, 2, 3, 8])):
        if data:
            byte = random.choice([0, 1, 127, 128, 255, random.randrange(256)])
            data[place_in(random, data)] = byte


def flip_bit(random, data, _):
    if data:
        data[place_in(random, data)] ^= 1 << random.randrange(8)


def write_number(random, data, _):
    """A number of two, four or eight bytes that announces much, or one near to that of before."""
    size = random.choice([2, 2, 4, 4, 4, 8])
    order = random.choice(["little", "big"])
    place = place_in(random, data) // 2 * 2
    former = int.from_bytes(data[place:place + size], order)
    near = [former + 1, former - 1, former * 2, former * 256, -former, former // 2]
    number = random.choice(EXTREMES + near * 4)
    data[place:place + size] = (number % (1 << (8 * size))).to_bytes(size, order)


def write_digits(random, data, _):
    """Another number in the words of a text."""
    starts = [i for i in range(min(len(data), 4096)) if chr(data[i]).isdigit()]
    if not starts:
        return
    begin = random.choice(starts)
    end = begin
    while end < len(data) and chr(data[end]).isdigit():
        end += 1
    data[begin:end] = str(random.choice(EXTREMES + [-1])).encode()


def cut(random, data, _):
    del data[random.randrange(len(data) + 1):]


def lengthen(random, data, _):
    data += bytes([random.choice([0, 255, random.randrange(256)])]) * random.choice([1, 16, 4000])


def any_range(random, data):
    begin = random.randrange(len(data) + 1)
    return begin, begin + random.choice([1, 2, 4, 12, 64, 1000])


def remove_range(random, data, _):
    begin, end = any_range(random, data)
    del data[begin:end]


def repeat_range(random, data, _):
    begin, end = any_range(random, data)
    data[begin:begin] = data[begin:end] * random.choice([1, 1, 2, 50])


def fill_range(random, data, _):
    begin, end = any_range(random, data)
    data[begin:end] = bytes([random.choice([0, 127, 128, 129, 255])]) * len(data[begin:end])


def splice(random, data, other):
    """The begin of one picture, and the end of another of the same format."""
    place = random.randrange(max(1, min(len(data), len(other))))
    data[place:] = other[place:]


def write_tiff_entry(random, data, _):
    """One entry of a directory, such as that of the number of lines."""
    order = {b"II": "<", b"MM": ">"}.get(bytes(data[:2]))
    if order is None or len(data) < 8:
        return write_number(random, data, None)
    begin = struct.unpack_from(order + "I", data, 4)[0]
    if begin + 2 > len(data):
        return None
    count = struct.unpack_from(order + "H", data, begin)[0]
    entry = begin + 2 + 12 * random.randrange(max(1, min(count, 64)))
    if entry + 12 > len(data):
        return None
    place, form = random.choice([(0, "H"), (2, "H"), (4, "I"), (8, "I"), (8, "I"), (8, "H")])
    limit = 1 << (16 if form == "H" else 32)
    struct.pack_into(order + form, data, entry + place, random.choice(EXTREMES) % limit)
    return None


def chunks_of(data):
    """The chunks of a PNG, MNG or JNG as pairs of name and content, or None."""
    if bytes(data[:4]) not in PNG_LIKE:
        return None
    chunks, place = [], 8
    while place + 12 <= len(data):
        size = struct.unpack_from(">I", data, place)[0]
        if place + 12 + size > len(data):
            break
        chunks.append((bytes(data[place + 4:place + 8]), data[place + 8:place + 8 + size]))
        place += 12 + size
    return chunks


def write_chunks(data, chunks):
    """Writes the chunks with checksums that are right."""
    del data[8:]
    for name, content in chunks:
        data += struct.pack(">I", len(content)) + name + content
        data += struct.pack(">I", zlib.crc32(name + content))


def damage_chunk(random, data, other):
    """Another content of a chunk, below its checksum and, for pixels, below what packs them."""
    chunks = chunks_of(data)
    if not chunks:
        return change_bytes(random, data, other)
    number = random.randrange(len(chunks))
    name, content = chunks[number]
    damage = random.choice([change_bytes, write_number, flip_bit, cut, fill_range, repeat_range])
    try:
        plain = bytearray(zlib.decompress(content)) if name == b"IDAT" else None
    except zlib.error:
        plain = None
    if plain is not None and random.random() < 0.7:
        damage(random, plain, other)
        content = bytearray(zlib.compress(plain))
    else:
        content = bytearray(content)
        damage(random, content, other)
    chunks[number] = (name, content)
    return write_chunks(data, chunks)


def move_chunk(random, data, other):
    """A chunk that is gone, twice, or at another place."""
    chunks = chunks_of(data)
    if not chunks:
        return repeat_range(random, data, other)
    chunk = random.choice(chunks)
    if random.random() < 0.6:
        chunks.remove(chunk)
    if random.random() < 0.7:
        chunks.insert(random.randrange(len(chunks) + 1), chunk)
    return write_chunks(data, chunks)


MUTATIONS = [change_bytes, change_bytes, flip_bit, write_number, write_number, write_number,
             write_digits, cut, lengthen, remove_range, repeat_range, fill_range, splice,
             write_tiff_entry, damage_chunk, damage_chunk, move_chunk]


def mutant(random, sample, other):
    """Another picture that comes from this one, by one to three mutations."""
    data = bytearray(sample)
    for _ in range(random.choice([1, 1, 1, 2, 3])):
        random.choice(MUTATIONS)(random, data, other)
    return bytes(data)
