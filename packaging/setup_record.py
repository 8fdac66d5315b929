"""The setup record of a Windows CE installation cabinet (its first file, *.000), by which the device's installer
places the other files. All numbers are little-endian, texts ASCII with a counted terminator.
"""

import struct

HEADER_SIZE = 100
STRONGARM = 2577  # the processor type of ARM handhelds; installers of other devices refuse the cabinet
LOWEST_CE, HIGHEST_CE = (5, 0), (6, 99)
NO_BUILD_LIMIT = 0

SHARED_AND_COUNTED = 1 << 31
NOT_OVER_A_NEWER = 1 << 29


def _text(words):
    return words.encode("ascii") + b"\0"


def _sized(*numbers_and_text):
    """Numbers of 16 bits, then the length of the last argument and itself."""
    *numbers, data = numbers_and_text
    return struct.pack("<%dH" % (len(numbers) + 1), *numbers, len(data)) + data


def _strings(texts):
    return b"".join(_sized(number, _text(text)) for number, text in enumerate(texts, 1))


def _directories(folders, texts):
    """Each folder is a list of strings, which the device joins with backslashes."""
    ids = [[texts.index(part) + 1 for part in folder] + [0] for folder in folders]
    return b"".join(_sized(number, struct.pack("<%dH" % len(parts), *parts)) for number, parts in enumerate(ids, 1))


def _files(files, folders):
    entries = []
    for number, (name, folder, flags) in enumerate(files, 1):
        entries.append(struct.pack("<HHHI", number, folders.index(folder) + 1, number, flags) +
                       struct.pack("<H", len(_text(name))) + _text(name))
    return b"".join(entries)


def setup_record(application, provider, files):
    """The record's bytes. files: (name, folder as a list of strings, flags), in the order of their numbers from 1."""
    folders = []
    for _, folder, _ in files:
        if folder not in folders:
            folders.append(folder)
    texts = sorted({part for folder in folders for part in folder})
    sections = [_strings(texts), _directories(folders, texts), _files(files, folders), b"", b"", b""]

    names = _text(application) + _text(provider)
    offset, section_offsets = HEADER_SIZE + len(names), []
    for section in sections:
        section_offsets.append(offset)
        offset += len(section)
    application_end = HEADER_SIZE + len(_text(application))
    header = b"MSCE" + struct.pack(
        "<5I6I6H6I8H", 0, offset, 0, 1, STRONGARM, *LOWEST_CE, *HIGHEST_CE, NO_BUILD_LIMIT, NO_BUILD_LIMIT,
        len(texts), len(folders), len(files), 0, 0, 0, *section_offsets,
        HEADER_SIZE, len(_text(application)), application_end, len(_text(provider)), 0, 0, 0, 0)
    assert len(header) == HEADER_SIZE
    return header + names + b"".join(sections)
