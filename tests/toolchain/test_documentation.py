"""What the documents show exists and is what runs."""

import re

import pytest
from zorcmd.layout import REPOSITORY

DOCUMENTS = ["README.md", "toolchain/README.md", "benchmarks/README.md",
             *(f"docs/{path.name}" for path in (REPOSITORY / "docs").glob("*.md"))]


def test_script_of_the_readme_is_the_example():
    shown = re.search(r"```python\n(.*?)```", (REPOSITORY / "README.md").read_text(), re.S).group(1)
    example = (REPOSITORY / "examples/falling_box.py").read_text()
    assert shown.strip() in example


@pytest.mark.parametrize("document", DOCUMENTS)
def test_links_lead_somewhere(document):
    path = REPOSITORY / document
    targets = re.findall(r"\]\(([^)#]+)\)", path.read_text())
    missing = [target for target in targets if "://" not in target and not (path.parent / target).exists()]
    assert missing == []


def test_files_named_in_the_life_of_a_call_exist():
    text = (REPOSITORY / "docs/architecture.md").read_text()
    names = set(re.findall(r"`((?:toolkit|binding|swig|toolchain|cmake|tests)/[\w/.]+\.\w+)`", text))
    assert len(names) >= 4
    assert [name for name in sorted(names) if not (REPOSITORY / name).exists()] == []


def test_every_example_is_in_the_table():
    readme = (REPOSITORY / "README.md").read_text()
    for script in (REPOSITORY / "examples").glob("*.py"):
        assert f"(examples/{script.name})" in readme
