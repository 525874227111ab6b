"""The command `./zor`: sets up the toolchain, builds, runs and tests. Standard library only, Python 3.9 and later."""
