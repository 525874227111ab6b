"""The same script gives the same bits of state in every process, whatever is drawn and however fast."""

import pathlib
import random
import struct
import subprocess
import sys

import pytest

SCRIPT = pathlib.Path(__file__).parent / "data" / "repeatable.py"


def run(path, *how):
    """State of all bodies and the log of contacts, as the script wrote them. The addresses of objects differ in each
    process, and some memory is taken in between."""
    environment = {"PYTHONPATH": ":".join(sys.path), "PYTHONHASHSEED": str(random.randrange(1000)),
                   "MALLOC_PERTURB_": str(random.randrange(1, 255)), "PATH": "/usr/bin:/bin", "HOME": str(path.parent)}
    result = subprocess.run([sys.executable, SCRIPT, path, *map(str, how)], capture_output=True, text=True, timeout=600, env=environment)
    assert result.returncode == 0, result.stderr
    return path.read_bytes()


@pytest.fixture(scope="module")
def expected(tmp_path_factory):
    return run(tmp_path_factory.mktemp("plain") / "state", "plain")


def test_the_scene_has_come_to_life(expected):
    numbers = struct.unpack("<d", expected[:8])
    assert numbers[0] == pytest.approx(1000 / 60)
    log = expected.decode("ascii", "ignore")
    assert log.count(" +") > 500 and log.count(" -") > 100
    body_count = 120 + 8 + 1 + 6 + 1
    state = struct.unpack(f"<{1 + 14 * body_count}d", expected[:8 * (1 + 14 * body_count)])
    asleep = state[14::14]
    assert 5 < sum(asleep) < body_count


def test_another_process(expected, tmp_path):
    assert run(tmp_path / "state", "plain") == expected


def test_an_application_without_pictures(expected, tmp_path):
    assert run(tmp_path / "state", "application", "--window", "64x48") == expected


def test_with_visuals_rays_and_a_screen_shot(expected, tmp_path):
    assert run(tmp_path / "state", "visuals", "--window", "64x48", "--screenShot", tmp_path / "shot.png") == expected
