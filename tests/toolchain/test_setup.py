"""The private root's set-up with stand-ins for the programs that make it: interruption, failure, resuming."""

import os
import shutil
import subprocess
import sys
import threading
import time

import pytest
from zorcmd import lock, packages, privateroot, sandbox
from zorcmd.errors import ZorError
from zorcmd.layout import REPOSITORY

LIST = "g++ # compiler\nswig/suite\n\ncmake ninja-build\n"


def test_package_list_is_read_and_named():
    assert packages.parse(LIST) == [("g++", ""), ("swig", "suite"), ("cmake", ""), ("ninja-build", "")]
    name = packages.root_name(LIST, "recipe", "x86_64")
    reordered = "# another comment\nswig/suite cmake\nninja-build\ng++\n"
    assert packages.root_name(reordered, "recipe", "x86_64") == name
    changes = [(LIST + "git\n", "recipe", "x86_64"), (LIST.replace("/suite", ""), "recipe", "x86_64")]
    changes += [(LIST, "recipe 2", "x86_64"), (LIST, "recipe", "aarch64")]
    assert len({packages.root_name(*change) for change in changes} | {name}) == 5


def test_container_recipe_installs_the_same_list():
    recipe = (REPOSITORY / "toolchain/Dockerfile").read_text()
    assert "packages.txt" in recipe and "install-packages" in recipe
    assert f"debian:{packages.RELEASE}" in recipe


@pytest.fixture
def stand_ins(programs, tmp_path, monkeypatch):
    """Stand-ins that keep a diary; files named fail-NAME make them fail."""
    diary = tmp_path / "diary"
    common = f'echo "$(basename $0)" >> {diary}\n'
    programs("unshare", 'shift; exec "$@"')
    programs(
        "mmdebstrap",
        common
        + 'for word; do case $word in *.partial/*) target=$word ;; esac; done\n'
        + 'if [ -e "$target/left-over" ]; then echo "not cleaned"; exit 9; fi\n'
        + 'mkdir -p "$target/etc" "$target/usr" "$target/var/lib/apt/lists" "$target/tmp"\n'
        + f'if [ -e {tmp_path}/fail-base ]; then touch "$target/left-over"; echo "cannot resolve host"; exit 3; fi',
    )
    programs("bwrap", f'case "$*" in *install-packages*) {common} [ ! -e {tmp_path}/fail-packages ] || exit 4 ;; esac')
    programs("newuidmap", "")
    monkeypatch.setenv("PATH", f"{programs.folder}:{os.environ['PATH']}")
    monkeypatch.setenv("ZOR_CACHE", str(tmp_path / "cache"))
    monkeypatch.setattr(privateroot, "install_tools", lambda: None)
    monkeypatch.setattr(os, "geteuid", lambda: 0)
    return lambda: diary.read_text().split() if diary.exists() else []


def test_complete_setup_is_renamed_and_kept(stand_ins, tmp_path):
    root = privateroot.ensure()
    assert root == privateroot.folder() / "root" and root.is_dir()
    assert not list(root.parent.parent.glob("*.partial"))
    assert (root / "etc/resolv.conf").is_file()
    first = stand_ins()
    assert first == ["mmdebstrap", "bwrap", "bwrap"]
    assert privateroot.ensure() == root
    assert stand_ins() == first
    assert privateroot.inside(root / "usr/local/share/zor") == packages.current_root_name()


def test_further_packages_come_on_a_copy_of_the_root(stand_ins, tmp_path):
    more = tmp_path / "bench_x.packages"
    more.write_text("a-plotter\n")
    base = privateroot.ensure()
    (base / "usr/tool").touch()
    before = stand_ins()
    root = privateroot.ensure(more)
    assert (root / "usr/tool").exists() and root != base
    assert (root / "tmp").stat().st_mode & 0o1777 == 0o1777  # apt writes there as a user of its own
    own = privateroot.OWN_FOLDER.relative_to("/") / "packages.txt"
    assert (root / own).read_text() == "a-plotter\n" != (base / own).read_text()
    assert stand_ins()[len(before) :] == ["bwrap", "bwrap"]  # download and installation, no second base
    assert privateroot.ensure() == base and privateroot.ensure(more) == root
    assert privateroot.others() == []
    more.write_text("another\n")
    assert privateroot.ready(more=more) is None


def test_failed_base_is_redone_from_nothing(stand_ins, tmp_path):
    (tmp_path / "fail-base").touch()
    with pytest.raises(ZorError, match="cannot resolve host") as failure:
        privateroot.ensure()
    assert "ZOR_DEBIAN_MIRROR" in failure.value.hint
    assert privateroot.ready() is None
    (tmp_path / "fail-base").unlink()
    assert privateroot.ensure().is_dir()


def test_failed_installation_goes_on_from_the_base(stand_ins, tmp_path):
    (tmp_path / "fail-packages").touch()
    with pytest.raises(ZorError, match="exit status 4"):
        privateroot.ensure()
    assert privateroot.ready() is None
    (tmp_path / "fail-packages").unlink()
    privateroot.ensure()
    assert stand_ins().count("mmdebstrap") == 1


def test_full_disk_is_said_before_anything_is_made(stand_ins, monkeypatch):
    usage = shutil.disk_usage("/")._replace(free=2 * 10**9)
    monkeypatch.setattr(shutil, "disk_usage", lambda path: usage)
    with pytest.raises(ZorError, match="2.0 GB free") as failure:
        privateroot.ensure()
    assert "ZOR_CACHE" in failure.value.hint
    assert stand_ins() == []


def test_cache_folder_that_cannot_be_made_is_named(stand_ins, tmp_path, monkeypatch):
    (tmp_path / "a file").write_text("")
    monkeypatch.setenv("ZOR_CACHE", str(tmp_path / "a file" / "cache"))
    assert privateroot.ready() is None
    with pytest.raises(ZorError, match="a file/cache"):
        privateroot.ensure()


def test_forbidden_sandbox_says_why(stand_ins, programs):
    programs("bwrap", 'echo "bwrap: No permissions to create a new namespace" >&2; exit 1')
    with pytest.raises(ZorError, match="No permissions to create a new namespace"):
        privateroot.ensure()
    assert stand_ins() == []


def test_tools_that_cannot_be_installed_are_named(monkeypatch, programs):
    monkeypatch.setenv("PATH", str(programs.folder))
    monkeypatch.setattr(os, "geteuid", lambda: 1000)
    with pytest.raises(ZorError, match="mmdebstrap bubblewrap.*no apt-get"):
        privateroot.install_tools()
    programs("apt-get", "")
    with pytest.raises(ZorError) as failure:
        privateroot.install_tools()
    assert "sudo apt-get install mmdebstrap bubblewrap" in failure.value.hint


def test_second_run_waits_for_the_first(tmp_path, capfd):
    path = tmp_path / "a.lock"
    order = []

    def second():
        with lock.held(path, "waiting"):
            order.append("second")

    with lock.held(path, "busy"):
        thread = threading.Thread(target=second)
        thread.start()
        time.sleep(0.2)
        order.append("first")
    thread.join(10)
    assert order == ["first", "second"]
    assert "waiting" in capfd.readouterr().err


def test_lock_outlives_a_killed_holder_until_its_children_end(tmp_path):
    path = tmp_path / "a.lock"
    with lock.held(path, "busy") as descriptor:
        child = subprocess.Popen([sys.executable, "-c", "import time; time.sleep(1)"], pass_fds=(descriptor,))
    started = time.monotonic()
    with lock.held(path, "busy"):
        assert time.monotonic() - started > 0.3
        assert child.wait(10) == 0


@pytest.fixture
def root(tmp_path):
    """A root's skeleton."""
    folder = tmp_path / "root"
    for name in ("usr/bin", "etc", "var/lib/dpkg", "var/cache", "var/tmp"):
        (folder / name).mkdir(parents=True)
    (folder / "bin").symlink_to("usr/bin")
    return folder


def binds(words):
    pairs = {}
    for i, word in enumerate(words):
        if word in ("--bind", "--bind-try", "--ro-bind", "--ro-bind-try", "--symlink"):
            pairs[words[i + 2]] = (word, words[i + 1])
    return pairs


def test_inside_the_root_is_read_only_and_the_users_folders_are_not(root, monkeypatch):
    monkeypatch.setenv("XAUTHORITY", "/nowhere")
    words = sandbox.command(root, ["program", "argument"], cwd="/tmp")
    found = binds(words)
    assert found["/usr"] == ("--ro-bind", str(root / "usr"))
    assert found["/bin"] == ("--symlink", "usr/bin")
    assert found["/var/lib/dpkg"][0] == "--ro-bind"
    assert found["/tmp"] == ("--bind-try", "/tmp")
    assert words[-2:] == ["program", "argument"]
    assert words[words.index("--chdir") + 1] == "/tmp"


def test_homes_below_var_are_shared_and_system_folders_refused(root, monkeypatch, tmp_path):
    monkeypatch.setattr(os.path, "isdir", lambda path: True)
    monkeypatch.setenv("HOME", "/var/lib/builder")
    assert binds(sandbox.command(root, ["x"], cwd="/tmp"))["/var/lib/builder"] == ("--bind", "/var/lib/builder")
    with pytest.raises(ZorError, match="/usr/local/src lies in a system folder"):
        sandbox.command(root, ["x"], cwd="/usr/local/src")


def test_settings_of_the_hosts_interpreter_stay_outside(monkeypatch):
    monkeypatch.setenv("LD_LIBRARY_PATH", "/host/lib")
    monkeypatch.setenv("PYTHONHOME", "/host/python")
    monkeypatch.setenv("MY_SETTING", "kept")
    values = sandbox.environment({"EXTRA": "1"})
    assert "LD_LIBRARY_PATH" not in values and "PYTHONHOME" not in values
    assert values["MY_SETTING"] == "kept" and values["EXTRA"] == "1"
    assert values["PATH"] == sandbox.ROOT_PATH
