"""Reads text files: UTF-8 without a byte order mark, in lines that end with a line feed."""

import pathlib


class FormatError(Exception):
    """The file cannot be checked further. The arguments are the findings."""


def read(file):
    """Returns the text of a file. Raises FormatError if it cannot be read or breaks a rule."""
    path = pathlib.Path(file)
    if path.exists() and not path.is_file():  # reading a FIFO could block forever
        raise FormatError("cannot be read: not a regular file")
    try:
        data = path.read_bytes()
        text = data.decode("utf-8")
    except OSError as error:
        raise FormatError(f"cannot be read: {error.strerror}") from error
    except UnicodeDecodeError as error:
        line = data.count(b"\n", 0, error.start) + 1
        raise FormatError(f"line {line} is not UTF-8; save the file as UTF-8") from error
    if text.startswith("\ufeff"):
        raise FormatError("begins with a byte order mark; save the file as UTF-8 without it")
    if "\r" in text:
        raise FormatError("has carriage returns; save the file with Unix line ends")
    return text
