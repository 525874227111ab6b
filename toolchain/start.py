"""What ./zor starts."""

import sys

from zorcmd.cli import main

sys.exit(main(sys.argv[1:]))
