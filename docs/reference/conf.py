"""Settings of Sphinx for the reference; the pages are written by toolchain/reference."""

project = "zorOSG"
copyright = "the zorOSG developers"
html_title = "zorOSG"
html_theme = "furo"
html_static_path = ["static"]
html_css_files = ["reference.css"]
html_copy_source = False
html_show_sphinx = False
html_show_copyright = False
html_theme_options = {"navigation_with_keys": True}
highlight_language = "python"
pygments_style = "friendly"
pygments_dark_style = "monokai"

add_module_names = False
toc_object_entries_show_parents = "hide"
maximum_signature_line_length = 90
python_display_short_literal_types = True

# Every name in a signature leads somewhere, but for those of Python itself.
nitpicky = True
_PYTHON = ["bool", "bytes", "dict", "float", "int", "list", "memoryview", "None", "object", "range", "set", "slice", "str", "tuple",
           "type", "Any", "Buffer", "Callable", "ClassVar", "Final", "Generator", "Iterable", "Iterator", "Literal", "Mapping", "Never",
           "NoReturn", "Self", "Sequence", "SupportsFloat", "SupportsIndex", "optional"]
nitpick_ignore_regex = [("py:.*", rf"(builtins\.|typing\.|collections\.abc\.|types\.|numpy\.|os\.)?({'|'.join(_PYTHON)})"),
                        ("py:.*", r"(numpy|os|types|pathlib)\.[\w.]+"), ("py:exc", r"\w+(Error|Exception|Exit|Interrupt|Iteration)")]
