"""The build step that names the run-time types of the wrappers."""

import importlib.util
import pathlib

import pytest

SCRIPT = pathlib.Path(__file__).parents[2] / "toolchain" / "name_swig_types.py"


@pytest.fixture
def step():
    specification = importlib.util.spec_from_file_location("name_swig_types", SCRIPT)
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


SOURCE = "".join(f'  PyType_Spec spec = {{\n    "{name}",\n' for name in ("SwigPyObject", "SwigPyPacked", "swigvarlink"))
SOURCE += "".join(f'  return (strcmp(op_type->tp_name, "{name}") == 0);\n' for name in ("SwigPyObject", "SwigPyPacked"))


def test_every_place_gets_the_module(step):
    result = step.name_types(SOURCE)
    assert result.count('"swig_runtime_data" SWIG_RUNTIME_VERSION "." "Swig') == 4
    assert result.count('"swig_runtime_data" SWIG_RUNTIME_VERSION "." "swigvarlink"') == 1


@pytest.mark.parametrize("lost", ['"swigvarlink",', 'tp_name, "SwigPyPacked")', '"SwigPyObject",'])
def test_a_source_without_a_place_to_rename_is_refused(step, lost, tmp_path, capfd):
    source, result = tmp_path / "in.cxx", tmp_path / "out.cxx"
    source.write_text(SOURCE.replace(lost, ""))
    assert step.main([str(source), str(result)]) == 1
    assert "in.cxx" in capfd.readouterr().err
    assert not result.exists()
