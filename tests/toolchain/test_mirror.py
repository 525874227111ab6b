"""The mirror taken from sample apt configurations."""

import pytest
from zorcmd import mirror

DEBIAN = {"ID": "debian", "VERSION_CODENAME": "bookworm"}

DEB822 = """\
# comment
Types: deb
URIs: http://security.example/debian-security
Suites: bookworm-security
Components: main

Types: deb deb-src
URIs: http://mirror.example/debian/
Suites: bookworm bookworm-updates
Components: main
 contrib
Signed-By: /usr/share/keyrings/k.gpg
"""

ONE_LINE = """\
# deb http://commented.example/debian bookworm main
deb [arch=amd64 signed-by=/k.gpg] https://vendor.example/apt bookworm vendor
deb-src http://sources.example/debian bookworm main
deb [arch=amd64] http://mirror.example/debian bookworm main contrib # comment
"""


def apt_folder(tmp_path, files):
    (tmp_path / "sources.list.d").mkdir()
    for name, text in files.items():
        (tmp_path / name).write_text(text)
    return tmp_path


@pytest.mark.parametrize(
    "files",
    [
        {"sources.list.d/debian.sources": DEB822},
        {"sources.list": ONE_LINE},
        {"sources.list.d/a.list": ONE_LINE, "sources.list.d/b.list.save": "deb http://old.example/debian bookworm main\n"},
    ],
    ids=["deb822", "one line", "folder"],
)
def test_mirror_of_the_own_release(tmp_path, files):
    assert mirror.host_mirror(apt_folder(tmp_path, files), DEBIAN) == "http://mirror.example/debian"


@pytest.mark.parametrize(
    "text",
    [
        "Enabled: no\nTypes: deb\nURIs: http://m.example/debian\nSuites: bookworm\nComponents: main\n",
        "Types: deb-src\nURIs: http://m.example/debian\nSuites: bookworm\nComponents: main\n",
        "Types: deb\nURIs: http://m.example/x\nSuites: bookworm\nComponents: contrib\n",
        "Types: deb\nURIs: cdrom:[disc]/\nSuites: bookworm\nComponents: main\n",
        "",
    ],
    ids=["disabled", "sources only", "no main", "disc", "empty"],
)
def test_entries_that_are_no_mirror(tmp_path, text):
    assert mirror.host_mirror(apt_folder(tmp_path, {"sources.list.d/x.sources": text}), DEBIAN) is None


def test_other_systems_and_the_users_choice(tmp_path):
    apt = apt_folder(tmp_path, {"sources.list": ONE_LINE})
    ubuntu = {"ID": "ubuntu", "VERSION_CODENAME": "bookworm"}
    assert mirror.choose({}, apt, ubuntu)[0] is None
    assert mirror.choose({}, apt, DEBIAN) == ("http://mirror.example/debian", "this machine's apt configuration")
    chosen = mirror.choose({"ZOR_DEBIAN_MIRROR": "http://mine.example/debian/"}, apt, DEBIAN)
    assert chosen == ("http://mine.example/debian", "ZOR_DEBIAN_MIRROR")


def test_proxies_are_passed_on_and_nothing_else():
    dump = (
        'Acquire::http::Proxy "http://proxy.example:3128";\n'
        'Acquire::https::Verify-Peer "false";\n'
        'Acquire::http::Proxy::mirror.example "DIRECT";\n'
        'Acquire::https::Proxy "";\n'
        'Acquire::Retries "3";\nAPT::Architecture "amd64";\n'
    )
    assert mirror.parse_apt_config(dump) == [
        'Acquire::http::Proxy "http://proxy.example:3128"',
        'Acquire::https::Verify-Peer "false"',
        'Acquire::http::Proxy::mirror.example "DIRECT"',
    ]
