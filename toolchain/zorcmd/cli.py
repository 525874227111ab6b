"""The command line: which sub-commands there are and what each does."""

import argparse
import os
import sys

from zorcmd import build as builds
from zorcmd import display, doctor, layout, testing, toolchain
from zorcmd.errors import ZorError
from zorcmd.progress import note, warn

_DESCRIPTION = """Sets up the toolchain, builds the project, and runs scripts and tests.

The first call makes a private Debian root below the cache folder (unless this
machine has all the tools itself) and builds; later calls start in seconds."""

_ENVIRONMENT = """environment:
  ZOR_CACHE           cache folder (default: ~/.cache/zorosg)
  ZOR_DEBIAN_MIRROR   Debian mirror of the private root (default: this machine's)
  ZOR_TOOLCHAIN       native or root, to insist on one of them
  ZOR_FILE_PATH       folders searched for models and images, before data/"""


def _parser():
    parser = argparse.ArgumentParser(
        prog="./zor", description=_DESCRIPTION, epilog=_ENVIRONMENT, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    commands = parser.add_subparsers(dest="command", metavar="COMMAND")

    def add(name, text):
        command = commands.add_parser(name, help=text, description=text)
        return command

    run = add("run", "build what is out of date and run a Python script")
    run.add_argument("--preset", choices=("release", "debug"), default="release")
    run.add_argument("script", metavar="SCRIPT")
    # Older argparse calls an empty remainder missing; it never is.
    run.add_argument("arguments", metavar="ARGS", nargs=argparse.REMAINDER, help="passed to the script").required = False

    test = add("test", "build everything and run the tests")
    test.add_argument("--asan", action="store_true", help="with address and undefined-behaviour sanitizers")
    test.add_argument("-v", "--verbose", action="store_true", help="name every test")
    test.add_argument("pattern", metavar="PATTERN", nargs="?", default="", help="regular expression, or a Python test file")

    build = add("build", "build everything")
    build.add_argument("--preset", choices=builds.PRESETS, default="release")
    build.add_argument("target", metavar="TARGET", nargs="?", default="all")

    shell = add("shell", "open a shell with the tools, or run one command there")
    shell.add_argument("arguments", metavar="COMMAND", nargs=argparse.REMAINDER)

    bench = add("bench", "build and run the benchmarks")
    bench.add_argument("pattern", metavar="PATTERN", nargs="?", default="",
                       help="a subject (calls, simulation, values), or a regular expression of single benchmarks")

    add("docs", "make the reference in HTML: modules, C++ headers, guides, examples")

    add("doctor", "tell what was found and what is missing")
    return parser


def script_environment(build, environ=os.environ):
    """What makes the modules importable and the data found, without a setting of the user's."""
    python = [str(build.python)] + [p for p in environ.get("PYTHONPATH", "").split(":") if p]
    files = [p for p in environ.get("ZOR_FILE_PATH", "").split(":") if p] + [str(layout.REPOSITORY / "data")]
    return {"PYTHONPATH": ":".join(python), "ZOR_FILE_PATH": ":".join(files)}


def _run(options):
    script = options.script
    if not os.path.isfile(script):
        kind = "is a folder" if os.path.isdir(script) else "does not exist"
        raise ZorError(f"script {os.path.abspath(script)} {kind}", status=2)
    build = builds.Build(toolchain.obtain(), options.preset)
    build.bring_up_to_date("zor_modules")
    problem = display.problem()
    if problem:
        warn(f"{problem}; rendering off screen")
    extra = script_environment(build)
    if problem:
        extra["DISPLAY"] = ""
    sys.stdout.flush()
    build.toolchain.replace(["python3", script, *options.arguments], extra)


def _test(options):
    build = builds.Build(toolchain.obtain(), "asan" if options.asan else "release")
    build.bring_up_to_date()
    outcome = testing.TestRun(build, options.pattern, options.verbose).run()
    print(outcome, flush=True)
    return outcome.status


def _build(options):
    build = builds.Build(toolchain.obtain(), options.preset)
    build.bring_up_to_date(options.target)
    note(f"{options.preset} is up to date in {os.path.relpath(build.folder)}")
    return 0


def _shell(options):
    build = builds.Build(toolchain.obtain())
    command = options.arguments or [os.environ.get("SHELL", "bash") if build.toolchain.root is None else "bash"]
    extra = script_environment(build)
    extra["debian_chroot"] = "zor"
    build.toolchain.replace(command, extra)


def _bench(options):
    build = builds.Build(toolchain.obtain())
    build.bring_up_to_date()
    programs = sorted((build.folder / "bin").glob("bench_*")) + sorted((layout.REPOSITORY / "benchmarks").glob("bench_*.py"))
    subjects = [program for program in programs if program.stem == f"bench_{options.pattern}"]
    pattern = "" if subjects else options.pattern
    extra = script_environment(build)
    extra["PYTHONPATH"] += f":{build.folder / 'benchmarks' / 'python'}"
    status = 0
    for program in subjects or programs:
        note(program.name)
        if program.suffix == ".py":
            more = program.with_suffix(".packages")  # what only this benchmark needs
            tools = build.toolchain.having(more) if more.exists() else build.toolchain
            status |= tools.call(["python3", program, pattern], extra)
        else:
            status |= build.toolchain.call([program, f"--benchmark_filter={pattern or '.'}"])
    return 1 if status else 0


def _docs(_):
    build = builds.Build(toolchain.obtain())
    build.bring_up_to_date("zor_modules")
    output = layout.REPOSITORY / "build" / "docs"
    output.mkdir(parents=True, exist_ok=True)
    program = layout.REPOSITORY / "toolchain" / "make_reference.py"
    build.toolchain.step("Making the reference", ["python3", program, layout.REPOSITORY, build.python, output], output / "zor-docs.log",
                         extra=script_environment(build))
    note(f"the reference is {os.path.relpath(output / 'html' / 'index.html')}; open it with")
    note(f"  xdg-open {os.path.relpath(output / 'html' / 'index.html')}")
    return 0


_COMMANDS = {"run": _run, "test": _test, "build": _build, "shell": _shell, "bench": _bench, "docs": _docs, "doctor": lambda _: doctor.report()}


def main(arguments):
    """Runs one sub-command and returns the exit status."""
    parser = _parser()
    if not arguments:
        parser.print_help()
        return 0
    options = parser.parse_args(arguments)
    try:
        return _COMMANDS[options.command](options)
    except ZorError as error:
        print(f"zor: error: {error}", file=sys.stderr)
        for line in error.hint.splitlines():
            print(f"  {line}", file=sys.stderr)
        return error.status
    except KeyboardInterrupt:
        print("\nzor: interrupted; the same command goes on from here", file=sys.stderr)
        return 130
