"""What the build steps over generated wrappers share: reading one, and writing a whole one or none."""

import os
import sys


def run(arguments, transform, usage):
    """Applies a step to the file INPUT and writes OUTPUT; `transform` raises ValueError where its place is missing."""
    if len(arguments) != 2:
        print(usage, file=sys.stderr)
        return 2
    source_path, result_path = arguments
    with open(source_path, encoding="utf-8", errors="surrogateescape") as stream:
        source = stream.read()
    try:
        result = transform(source)
    except ValueError as error:
        print(f"{source_path}: {error}; is this the wrapper of another SWIG version?", file=sys.stderr)
        return 1
    # An interrupted step must not leave half a wrapper that looks up to date.
    temporary = result_path + ".tmp"
    with open(temporary, "w", encoding="utf-8", errors="surrogateescape") as stream:
        stream.write(result)
    os.replace(temporary, result_path)
    return 0
