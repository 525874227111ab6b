"""The reference in HTML: pages from type stubs, guides and examples; make_reference.py is the command."""
