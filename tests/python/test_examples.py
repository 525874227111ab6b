"""The examples that no other test runs."""

import pathlib
import re
import subprocess
import sys

import numpy
import pytest

import osgDB

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"


def run_example(name, *arguments, window="320x180"):
    result = subprocess.run([sys.executable, EXAMPLES / name, "--window", window, *arguments], capture_output=True, text=True, timeout=300)
    assert result.returncode == 0 and "Traceback" not in result.stderr + result.stdout, result.stdout + result.stderr
    return result.stdout


def pixels_of(picture):
    return numpy.asarray(osgDB.readImageFile(str(picture))).astype(int)


def test_listeners_colour_by_speed(tmp_path):
    picture = tmp_path / "balls.png"
    run_example("listeners.py", "--screenShot", picture, "--stopAfter", "1.8", window="480x270")
    pixels = pixels_of(picture)
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    slow, medium, fast = blue > 2 * red, green > 1.6 * numpy.maximum(red, blue), red > 2 * numpy.maximum(green, blue)
    assert min(slow.sum(), medium.sum(), fast.sum()) > 50


def test_a_wave_goes_through_many_bodies(tmp_path):
    rows = {}
    for time in ("0.1", "0.5"):
        picture = tmp_path / f"{time}.png"
        told = run_example("many_bodies.py", "--count", "600", "--screenShot", picture, "--stopAfter", time)
        assert "600 visuals made" in told
        rows[time] = pixels_of(picture)
    assert (abs(rows["0.1"] - rows["0.5"]).max(axis=-1) > 60).mean() > 0.01
    red, _, blue = numpy.moveaxis(rows["0.1"], -1, 0)
    assert (red > 1.5 * blue + 40).sum() > 100 and (blue > 1.5 * red + 40).sum() > 100  # the middle and the rim


def test_the_wrecking_ball_is_pulled_up_and_let_go(tmp_path):
    shown = {}
    for time in ("0.3", "2.2", "3.2"):
        picture = tmp_path / f"{time}.png"
        run_example("pick_and_drag.py", "--screenShot", picture, "--stopAfter", time, window="480x270")
        pixels = pixels_of(picture)
        red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
        rust = (red > 1.8 * green) & (green > 1.5 * blue) & (red > 60)
        shown[time] = numpy.argwhere(rust).mean(axis=0)  # row from below, column
    assert shown["2.2"][1] < shown["0.3"][1] - 40 and shown["2.2"][0] > shown["0.3"][0] + 20
    assert shown["3.2"][1] > shown["2.2"][1] + 40


def test_hopper_runs_out(tmp_path):
    picture, plot = tmp_path / "hopper.png", tmp_path / "flow.png"
    told = run_example("granular_hopper.py", "--grains", "3000", "--plot", plot, "--screenShot", picture, "--stopAfter", "1.6", window="480x270")
    out = [float(line.split()[2]) for line in told.splitlines() if "kg out" in line]
    assert out[0] == 0 and out[-1] > 5 and plot.stat().st_size > 5000
    pixels = pixels_of(picture)
    assert ((pixels[..., 0] > 1.4 * pixels[..., 2]) & (pixels[..., 0] > 90)).sum() > 200  # sand and brick red


def test_the_robot_arm_follows_its_curve(tmp_path):
    out = run_example("robot_arm.py", "--output", tmp_path, "--stopAfter", "3")
    error, greatest = re.search(r"([\d.]+) mm \(root mean square\), ([\d.]+) mm", out).groups()
    assert 0 < float(error) < 1.5 and float(greatest) < 4


def test_the_car_keeps_to_its_track(tmp_path):
    out = run_example("car.py", "--output", tmp_path, "--stopAfter", "8")
    speed, away, tilt = re.search(r"([\d.]+) m/s at the end; .* at most ([\d.]+) m; greatest tilt (\d+)", out).groups()
    assert float(speed) > 7 and float(away) < 1.5 and float(tilt) < 25
    assert (tmp_path / "car.png").stat().st_size > 10000


def test_a_scene_of_its_own_geometry(tmp_path):
    picture = tmp_path / "island.png"
    run_example("custom_geometry.py", "--screenShot", picture, "--stopAfter", "0.5", window="480x270")
    pixels = pixels_of(picture)
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    meadow, snow, crate = green > 1.15 * numpy.maximum(red, blue), pixels.min(axis=2) > 225, red > 1.7 * blue
    assert meadow.sum() > 5000 and snow.sum() > 200 and crate.sum() > 1000


def test_the_cradle_keeps_its_energy(tmp_path):
    diagram, picture = tmp_path / "energy.png", tmp_path / "cradle.png"
    out = run_example("newtons_cradle.py", "--balls", "2", "--diagram", diagram, "--screenShot", picture, "--stopAfter", "2.5")
    assert float(re.search(r"([\d.]+) % of the energy", out).group(1)) == pytest.approx(100, abs=1.5)
    assert diagram.stat().st_size > 20000
    pixels = pixels_of(picture)
    wood = (pixels[..., 0] > 1.3 * pixels[..., 2]) & (pixels[..., 0] > 60)
    assert wood.sum() > 500


def test_dominoes_fall_along_their_arms(tmp_path):
    picture = tmp_path / "dominoes.png"
    shown = {}
    for seconds in ("0.2", "6"):
        out = run_example("domino_run.py", "--count", "200", "--screenShot", picture, "--stopAfter", seconds)
        fallen = int(re.search(r"(\d+) of 200 dominoes fell", out).group(1))
        pixels = pixels_of(picture)
        shown[seconds] = fallen, (pixels.max(axis=2) > 1.6 * pixels.min(axis=2) + 20).sum(), (pixels.min(axis=2) > 250).mean()
    assert shown["0.2"][0] < 20 and shown["6"][0] >= 190
    assert min(coloured for _, coloured, _ in shown.values()) > 1000
    assert max(overexposed for _, _, overexposed in shown.values()) < 0.01


def test_particles_look_eleven_ways(tmp_path):
    picture = tmp_path / "looks.png"
    run_example("particle_looks.py", "--screenShot", picture, "--stopAfter", "1.6", window="960x540")
    pixels = pixels_of(picture)
    coloured = pixels.max(axis=2) > 1.6 * pixels.min(axis=2) + 20
    for row in numpy.array_split(coloured, 3):
        for cell in numpy.array_split(row, 4, axis=1)[:3]:
            assert cell.sum() > 300
    for lines in numpy.array_split(numpy.array_split(coloured, 4, axis=1)[3], 2):
        assert lines.sum() > 100


def test_every_kind_of_shadow_is_drawn(tmp_path):
    assert "7 kinds of shadows" in run_example("view_and_shadows.py", "--output", tmp_path)
    sheet = numpy.asarray(osgDB.readImageFile(str(tmp_path / "shadows.png"))).astype(int)[::-1]
    brightness = [sheet[180 * row + 60:180 * row + 180, 320 * column:320 * column + 320].sum(axis=2) for row in range(4) for column in range(2)]
    for method, tile in enumerate(brightness[:6]):
        assert (tile < brightness[6] - 100).sum() > 300, method
        assert (tile > brightness[6] + 100).sum() < 20, method
    assert all((tmp_path / name).stat().st_size > 10000 for name in ("statistics.png", "help.png", "debug.png"))


def test_recordings_of_a_tower(tmp_path):
    out = run_example("recording.py", "--output", tmp_path)
    frames, pictures, nearest = re.search(r"(\d+) frames in tower.mp4, (\d+) in tower.gif; nearest point ([\d.]+) m", out).groups()
    assert int(frames) == pytest.approx(132, abs=2) and int(pictures) == pytest.approx(66, abs=2)
    assert 1 < float(nearest) < 8
    sheet, depth = pixels_of(tmp_path / "sheet.png"), pixels_of(tmp_path / "depth.png")
    assert sheet.shape == (3 * 186 + 6, 3 * 326 + 6, 3) and (sheet[..., 0] > sheet[..., 2] + 60).sum() > 5000  # red and yellow blocks
    assert depth.shape == (270, 480, 3) and 0.02 < (depth == (28, 38, 70)).all(axis=2).mean() < 0.6


def test_materials_are_told_apart(tmp_path):
    picture = tmp_path / "materials.png"
    assert "28 bodies" in run_example("materials.py", "--screenShot", picture, "--stopAfter", "0.1", window="640x360")
    pixels = pixels_of(picture)[::-1]
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    plastic, gold, sky = (red > 150) & (green < 60), (red > 1.3 * blue) & (green > 1.2 * blue) & (green > 0.7 * red), (blue > 1.15 * red) & (blue > 150)
    outline = (red > 200) & (green > 140) & (green < 210) & (blue < 80)
    assert min(plastic.sum(), gold.sum(), outline.sum() * 10) > 600 and sky[:60].mean() > 0.2


def test_the_gallery_draws_the_cells_it_is_asked_for(tmp_path):
    sheet = tmp_path / "sheet.png"
    told = subprocess.run([sys.executable, EXAMPLES / "gallery.py", "--only", "clip plane", "--output", sheet, "--cells", tmp_path / "cells"],
                          capture_output=True, text=True, timeout=300)
    assert told.returncode == 0 and "3 pictures" in told.stdout, told.stdout + told.stderr
    cells = [pixels_of(path) for path in sorted((tmp_path / "cells").iterdir())]
    assert len(cells) == 3 and all(cell.std() > 10 for cell in cells)
    assert pixels_of(sheet).shape[1] > 3 * cells[0].shape[1]
