"""What can go wrong, by whose fault it is. Each message is one sentence."""

# SPDX-License-Identifier: MIT


class Error(Exception):
    """Base of all errors of this package."""


class FileError(Error, OSError):
    """A file or folder cannot be opened, read or written."""


class FormatError(Error, ValueError):
    """The content of a file cannot be understood."""


class MeshError(Error, ValueError):
    """Arrays that belong together do not fit, or a mesh is not one that the method can take."""


class UsageError(Error, ValueError):
    """An argument cannot be meant."""


class UnknownDialError(Error, KeyError):
    """A figure has no dial of the name; the message tells the closest ones."""

    # KeyError would show the sentence in quotation marks.
    __str__ = Exception.__str__


class ClosedError(Error):
    """The library that the object belongs to is closed."""


class BusyError(Error):
    """The host of this process is at work, or belongs to another thread."""


class Cancelled(Error):
    """The work was told to end by an interrupt that another thread received."""


class Warning(UserWarning):  # pylint: disable=redefined-builtin
    """Something was left out, changed or taken otherwise, and the work went on.

    Raised as an exception, which the filters of warnings can ask for, that of a conversion has the Conversion as its
    ``result``: it is made, and saved, by then.
    """

    result = None
