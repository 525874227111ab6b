"""How comments, documents and stubs become docstrings and pages."""

import textwrap

import pytest
from reference.enumerations import enumerations
from reference.markdown import Converter
from reference.model import Library
from reference.restructured import Linker
from stubs import docstrings

COMMENT = """
     Adds a force at a point, unless null. See Body::addForce.
    :type force: :py:class:`Vec3`
    :param force: - in newtons, true or not; std::invalid_argument when
                it is not finite
    :rtype: boolean
    :return: the null vector, or null. Throws std::runtime_error when the body is null
    :raises: std::out_of_range if the index is wrong
"""
OVERLOADS = """
    *Overload 1:*
     From a point.
    :type point: Vec3
    :param point: where

    |

    *Overload 2:*
     From a name.
    :type name: string
    :param name: which
"""


def test_comments_are_told_in_words_of_python():
    assert docstrings.tidy(COMMENT).splitlines() == [
        "Adds a force at a point, unless None. See Body.addForce.",
        "",
        ":param force: in newtons, True or not; RuntimeError when it is not finite",
        ":return: the null vector, or None",
        ":raises RuntimeError: when the body is None",
        ":raises RuntimeError: if the index is wrong",
    ]
    assert docstrings.tidy("Sets it. :param a: - one :return: true :raises: IndexError at the end").splitlines() == [
        "Sets it.", "", ":param a: one", ":return: True", ":raises IndexError: at the end"]


@pytest.mark.parametrize("parameters, expected", [
    ([{"point"}, {"name"}], ["From a point.", "From a name."]),
    ([{"point"}, {"other"}, {"name", "index"}], ["From a point.", "", "From a name."]),  # the second has no comment
    ([{"point"}, {"name"}, {"other"}], ["From a point.", "From a name.", ""]),  # copies have none
    ([{"point", "name"}, {"name", "point"}], ["From a point.", "From a name."]),
    ([{"point", "name"}, {"point", "name", "x"}, {"point", "name"}], ["From a point.", "", ""]),  # nobody can tell whose they are
])
def test_overloads_get_their_own_texts(parameters, expected):
    docs = docstrings.by_overload(docstrings.sections(OVERLOADS), parameters)
    assert [doc.partition("\n")[0] for doc in docs] == expected
    assert "From a name." in "".join(docs)


DOCUMENT = """
# A title

Text with `code|x`, **strong** words, a [page](other.md), a [file](../a.py) and snake_case_.

- one
  goes on
- two

| a | b |
|---|---|
| `x` | y* |

```python
x = 1
```
"""


def test_markdown_becomes_restructured_text():
    converter = Converter("docs", lambda path, target: ("doc", "/guide/other") if path == "docs/other.md" else ("", path))
    assert [line for line in converter.convert(DOCUMENT) if line] == [
        "A title", "=======",
        "Text with ``code|x``, **strong** words, a :doc:`page </guide/other>`, a ``file`` and snake_case\\_.",
        "- one goes on", "- two",
        ".. list-table::", "   :header-rows: 1", "   * - a", "     - b", "   * - ``x``", "     - y\\*",
        ".. code-block:: python", "   x = 1"]


STUB = '''
from typing import Final, overload
"""A module."""

class Base:
    """What all have."""
    def getName(self) -> str: ...

class Body(Base):
    """A body; see getName."""
    STATIC: Final[int]
    """Does not move."""
    @overload
    def __init__(self, name: str, /) -> None: ...
    @overload
    def __init__(self, other: Base, /) -> None: ...

def makeBody() -> Body:
    """Makes a Body."""
'''


@pytest.fixture
def library(tmp_path, monkeypatch):
    (tmp_path / "sample.pyi").write_text(STUB)
    (tmp_path / "sample.py").write_text("class Base: pass\nclass Body(Base):\n    STATIC = 3\n")
    monkeypatch.syspath_prepend(str(tmp_path))
    return Library(tmp_path, ["sample"])


def test_stubs_are_read_with_their_relations(library):
    base, body = library.classes["sample.Base"], library.classes["sample.Body"]
    assert body.bases == [base] and base.derived == [body] and library.modules["sample"].doc == "A module."
    assert [overload.arguments for overload in body.constructors] == ["name: str", "other: Base"]
    static = body.values["STATIC"]
    assert (static.annotation, static.value, static.doc) == ("int", 3, "Does not move.")
    assert [function.name for function in library.makers["sample.Body"]] == ["makeBody"]


def test_names_in_docstrings_are_linked_and_words_are_not(library):
    body = library.classes["sample.Body"]
    linker = Linker(library, library.modules["sample"], body)
    assert linker.text("A body: getName, makeBody() and sample.Base") == (
        "A body: :py:meth:`getName <sample.Base.getName>`, :py:func:`makeBody() <sample.makeBody>` and "
        ":py:class:`sample.Base <sample.Base>`")
    assert linker.text("Base *is* |here|, a_") == "Base \\*is\\* \\|here\\|, a\\_"
    assert linker.doc("Text\ngoes on:\n- one\n- two\n\n:param x: getName(1)\n    and more") == [
        "Text goes on:", "", "- one", "- two", "", "", ":param x: :py:meth:`getName <sample.Base.getName>`\\ (1) and more"]
    assert linker.summary(":return: the Body. It moves.") == "Returns the Body."


def test_enumerations_are_read_from_headers():
    one, other = enumerations("""
        /** Where it
         * lies. */
        enum Place : int {
          LEFT = 1, ///< Left, or so.
          RIGHT     /**< Right. */
        };
        /// How.
        enum class Way { ANY, };
        enum Silent { A };""")
    assert (one.name, one.doc, one.constants) == ("Place", "Where it lies.", ["LEFT", "RIGHT"])
    assert (other.name, other.doc, other.constants) == ("Way", "How.", ["ANY"])
