"""Rules for every text file: UTF-8 without a byte order mark, and lines that end with a line feed."""

import codecs


def fault(data):
    """Returns what is wrong with the bytes of a file, or None."""
    if data.startswith(codecs.BOM_UTF8):
        return "line 1 begins with a byte order mark; save the file as UTF-8 without it"
    if b"\r" in data:
        line = data.count(b"\n", 0, data.index(b"\r")) + 1
        return f"line {line} has a carriage return; save the file with Unix line ends"
    try:
        data.decode("utf-8")
    except UnicodeDecodeError as error:
        line = data.count(b"\n", 0, error.start) + 1
        return f"line {line} is not UTF-8; save the file as UTF-8"
    return None
