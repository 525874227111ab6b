"""The build steps over the wrappers: each finds its places, and refuses a source that lacks them."""

import importlib
import pathlib

import pytest

TOOLCHAIN = pathlib.Path(__file__).parents[2] / "toolchain"


@pytest.fixture
def load_step(monkeypatch):
    monkeypatch.syspath_prepend(TOOLCHAIN)
    return importlib.import_module


@pytest.fixture
def step(load_step):
    return load_step("name_swig_types")


SOURCE = "".join(f'  PyType_Spec spec = {{\n    "{name}",\n' for name in ("SwigPyObject", "SwigPyPacked", "swigvarlink"))
SOURCE += "".join(f'  return (strcmp(op_type->tp_name, "{name}") == 0);\n' for name in ("SwigPyObject", "SwigPyPacked"))


def test_every_place_gets_the_module(step):
    result = step.name_types(SOURCE)
    assert result.count('"swig_runtime_data" SWIG_RUNTIME_VERSION "." "Swig') == 4
    assert result.count('"swig_runtime_data" SWIG_RUNTIME_VERSION "." "swigvarlink"') == 1


@pytest.mark.parametrize("lost", ['"swigvarlink",', 'tp_name, "SwigPyPacked")', '"SwigPyObject",'])
def test_a_source_without_a_place_to_rename_is_refused(step, load_step, lost, tmp_path, capfd):
    source, result = tmp_path / "in.cxx", tmp_path / "out.cxx"
    source.write_text(SOURCE.replace(lost, ""))
    assert load_step("wrapperstep").run([str(source), str(result)], step.name_types, "") == 1
    assert "in.cxx" in capfd.readouterr().err
    assert not result.exists()


VARIABLE = """\
\t { "Video_codecs_get", _wrap_Video_codecs_get, METH_VARARGS, NULL},
\t { "Video_codecs_set", _wrap_Video_codecs_set, METH_O, NULL},
\t { "Video_start", _wrap_Video_start, METH_O, NULL},
  SWIG_addvarlink(globals, "Video_codecs", Swig_var_Video_codecs_get, Swig_var_Video_codecs_set);
  SWIG_addvarlink(globals, "plain", Swig_var_plain_get, Swig_var_plain_set);
"""


def test_static_variables_are_listed_setter_first(load_step):
    order = load_step("order_static_variables").order_variables
    get, set_, *rest = VARIABLE.splitlines()
    assert order(VARIABLE).splitlines() == [set_, get, *rest]
    with pytest.raises(ValueError, match="static variable Video_codecs"):
        order("\n".join([get, rest[0], set_, *rest[1:]]))


def test_every_gap_of_the_run_time_is_closed(load_step):
    step = load_step("guard_swig_runtime")
    source = "".join(place * (count or 3) for place, _, count in step.GUARDS)
    result = step.guard(source)
    for place, guarded, count in step.GUARDS:
        assert result.count(guarded) == (count or 3)
        if count:
            with pytest.raises(ValueError, match="places to guard"):
                step.guard(source.replace(place, "", 1))
