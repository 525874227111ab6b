"""Type stubs of the Python modules, made from what SWIG generates; make_stubs.py is the command."""
