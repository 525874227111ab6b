"""One child process: calls every flat function of every module, many times, and tells what came of it.

Usage: python -m fuzz.worker JOURNAL SEED CALLS SECONDS [SKIPPED,...]. Before each call its name and arguments go to
the journal, a file in shared memory, so that the parent knows the last one when the process dies.
"""

import collections
import importlib
import json
import mmap
import os
import random as randomness
import re
import resource
import signal
import sys
import time
import types

import _zor
import _zorOSG
import osg
from hypothesis import HealthCheck, Phase, given, seed, settings
from hypothesis import strategies as st

from fuzz import rules, values, world
from fuzz.registry import Registry
from fuzz.signatures import Signature

MODULES = ["zor", "zorCollide", "zorSDK", "zorRender", "zorIO", "zorStream", "zorUtil", "zorModel", "zorSensor", "zorTerrain", "zorWire",
           "zorCable", "zorNet", "osg", "osgDB", "osgText", "osgGA", "osgSim", "osgViewer", "zorOSG",
           "zorPython"]
SESSION = 500  # calls between two collections of dead objects
HANG = 30  # seconds that a call may take
MEMORY = 6 << 30  # address space beyond what is mapped at the start
TRACE = "ZOR_FUZZ_TRACE" in os.environ  # tells every call
KEPT = 8  # live objects of a type


class Journal:
    """Fixed memory that outlives the process."""

    SIZE = 1 << 14

    def __init__(self, path):
        with open(path, "r+b") as file:
            self._memory = mmap.mmap(file.fileno(), self.SIZE)

    def write(self, text):
        if TRACE:
            print(text, file=sys.stderr)
        data = text.encode("utf-8", "backslashreplace")[:self.SIZE - 1]
        self._memory[:len(data) + 1] = data + b"\0"


class Pool:
    """Live objects by type."""

    def __init__(self, registry):
        self.registry = registry
        self.objects = collections.defaultdict(list)
        self.random = None

    def add(self, value):
        if isinstance(value, (list, tuple)):
            for item in value[:3]:
                self.add(item)
            return
        key = self.registry.key_of(value)
        if key is None:
            return
        known = self.objects[key]
        if len(known) < KEPT:
            known.append(value)
        else:
            known[self.random.randrange(KEPT)] = value

    def any(self):
        kinds = [key for key, known in self.objects.items() if known]
        return self.random.choice(self.objects[self.random.choice(kinds)]) if kinds else None

    def take(self, key):
        """An object that is accepted as a `key`; None if there is none."""
        fitting = [source for source in self.registry.sources(key) if self.objects.get(source)]
        return self.random.choice(self.objects[self.random.choice(fitting)]) if fitting else None

    def thin(self):
        """Lets some go, in no order: owners before what they lend."""
        for known in self.objects.values():
            if known and self.random.random() < 0.5:
                del known[self.random.randrange(len(known))]


class Caller:
    """Chooses arguments, calls, and keeps count."""

    def __init__(self, journal, skipped):
        self.modules = [importlib.import_module(name) for name in MODULES]
        self.functions = {}  # flat functions and shadow classes by their names
        self.signatures = {}
        for module in self.modules:
            self._add_functions(importlib.import_module("_" + module.__name__))
            self._add_classes(module)
        self.directors = [self.functions[f"{module.__name__}.{bare}"] for module in self.modules for bare in dir(module)
                          if f"_{module.__name__}.disown_{bare}" in self.functions]
        self.skipped = skipped
        self.journal = journal
        self.registry = Registry()
        self.pool = Pool(self.registry)
        self.kinds = collections.defaultdict(list)  # shadow classes by the type of their objects
        for name, function in self.functions.items():
            if isinstance(function, type) and (key := self.class_key("_" + name, function.__name__)):
                self.kinds[key].append(name)
        self.makers = collections.defaultdict(set)  # functions by the type that they returned
        self.held = []  # what the library may hold by pointer without counting
        self.counts = collections.Counter()
        self.called = collections.Counter()
        self.reached = set()
        self.wrong = {}
        self.random = None
        self.deck = []
        self.plain = []
        self.odd = []
        self.number = 0
        self.news = False  # the last call told the type of a parameter

    def _add_functions(self, module):
        for bare, function in vars(module).items():
            if isinstance(function, types.BuiltinFunctionType):
                name = f"{module.__name__}.{bare}"
                known = rules.undefined(bare) or bare.endswith(("_swiginit", "_swigregister"))
                self.functions[name] = function
                self.signatures[name] = Signature(bare, None if known else function)

    def _add_classes(self, module):
        for bare, kind in vars(module).items():
            flat = self.signatures.get(f"_{module.__name__}.new_{bare}")
            if isinstance(kind, type) and kind.__module__ == module.__name__ and flat:
                name = f"{module.__name__}.{bare}"
                self.functions[name] = kind
                # The class itself passes the first parameter of a director's constructor.
                self.signatures[name] = flat.shifted() if f"_{module.__name__}.disown_{bare}" in self.functions else flat

    def _bare(self, name):
        return name.split(".")[1]

    # ---- arguments

    def wild(self):
        """Anything at all."""
        dice = self.random.random()
        if dice < 0.35 and self.plain:
            return self.random.choice(self.plain)
        if dice < 0.65:
            return self.pool.any()
        if dice < 0.7:
            return self.null(self.random.choice(self.registry.keys()))
        return self.random.choice(self.odd)

    def null(self, key):
        """A wrapped null pointer."""
        wrapped = _zor.new_Vec3()
        wrapped.disown()
        return self.registry.null(key, wrapped)

    def fitting(self, text, depth=0):
        """A value that a parameter of the declared type takes, as far as that is known."""
        random = self.random
        if text is None:
            return self.wild()
        key = self.registry.key(text)
        bare = re.sub(r"\bconst\b|&", "", text).strip()
        if bare == "bool":
            return random.random() < 0.5
        if bare in ("float", "double", "zor::Real", "zor::TimeStamp"):
            return random.choice((0.0, 0.01, 0.5, 1.0, 1, 2.5, -1.0, 30.0)) if random.random() < 0.85 else random.choice(values.FLOATS)
        if re.search(r"[sS]tring$|char \*$", bare):
            return random.choice(values.TEXTS)
        if bare == "PyObject *":
            return self.wild()
        if key is None or re.fullmatch(r"(unsigned )?(int|long|short|char)|u?int\d+_t|size_t|ptrdiff_t|.*(size|difference)_type|zor::U?Int\d*",
                                       bare):
            return random.choice((0, 1, 2, 3, 4, 7, 16, -1)) if random.random() < 0.85 else random.choice(values.EDGES)
        if random.random() < 0.04:
            return None if random.random() < 0.5 else self.null(key)
        found = self.pool.take(key)
        if (found is None or random.random() < 0.05) and depth < 4:
            made = self.make(key, depth + 1)
            found = made if made is not None else found
        return found

    def make(self, key, depth):
        """A new object of a type, or of one that converts to it."""
        kinds = [name for source in self.registry.sources(key) for name in self.kinds.get(source, ())]
        makers = [name for source in self.registry.sources(key) for name in self.makers.get(source, ())]
        for attempt in range(3):
            name = self.random.choice(kinds + makers) if kinds or makers else None
            if name is None or self._bare(name) in self.skipped:
                return None
            result = self.call(name, self.arguments(name, 1.0, depth))
            if result is not None and self.registry.key_of(result) in self.registry.sources(key):
                return result
        return None

    def arguments(self, name, well, depth=0):
        signature = self.signatures[name]
        form = self.random.choice(signature.forms)
        if well == 1.0:
            return [self.fitting(text, depth) for text in form]
        if well > 0 and form:
            chosen = [self.fitting(text, depth) for text in form]
            chosen[self.random.randrange(len(form))] = self.wild()
            return chosen
        count = len(form) if self.random.random() < 0.8 else self.random.randrange(6)
        return [self.wild() for _ in range(count)]

    # ---- calls

    def describe(self, value):
        if type(value) in (int, float, bool, type(None)):
            return repr(value)
        if isinstance(value, str):
            return ascii(value) if len(value) < 60 else f"{ascii(value[:20])}... ({len(value)})"
        key = self.registry.key_of(value)
        at = f" {int(getattr(value, 'this', value)):x}{'' if getattr(value, 'thisown', True) else ' borrowed'}" if key and TRACE else ""
        return f"<{key.decode()} {type(value).__name__}{at}>" if key else f"<{type(value).__name__}>"

    def call(self, name, arguments):
        self.number += 1
        bare = self._bare(name)
        self.journal.write(f"call {self.number}: {self.text(name, arguments)}")
        signal.setitimer(signal.ITIMER_REAL, HANG)
        self.called[name] += 1
        self.news = False
        result = None
        try:
            result = self.functions[name](*arguments)
            if hasattr(type(result), "thisown") and not self.is_counted(result):
                result.__dict__.setdefault("_keeps", []).append(arguments)  # what it may lie in; += gives an object back that has some
            elif type(result).__name__ == "SwigPyObject":
                self.held.append(arguments)  # the same; a plain pointer object has no place to keep them
            self.counts["returned"] += 1
            self.reached.add(name)
        except BaseException as error:  # whatever it is: it is judged below
            self.counts[type(error).__name__] += 1
            if not rules.allowed(bare, error, arguments):
                self.wrong.setdefault(f"{name}: {type(error).__name__}: {error}"[:300], self.text(name, arguments))
            if isinstance(error, (TypeError, OverflowError)):
                self.news = self.signatures[name].learn(error)
            if not isinstance(error, TypeError):
                self.reached.add(name)
        finally:
            signal.setitimer(signal.ITIMER_REAL, 0)
        return result

    def text(self, name, arguments):
        return f"{name}({', '.join(map(self.describe, arguments))})"

    def one(self, name):
        bare = self._bare(name)
        dice = self.random.random()
        if rules.undefined(bare):
            return self.undefined(name, bare, dice)
        if bare.endswith("_swigregister"):
            return self.register(name, bare)
        if bare.endswith("_swiginit"):
            return self.call(name, [self.random.choice((None, 5, "x", object())), self.wild()])
        arguments = self.arguments(name, 1.0 if dice < 0.6 else 0.5 if dice < 0.85 else 0.0)
        while True:
            prepared = self.prepare(bare, arguments)  # alive during the call
            result = self.call(name, arguments)
            if not self.news:
                break
            arguments = self.arguments(name, 1.0)  # with what is known now the call may get further
        self.keep(name, arguments)
        if result is not None:
            self.pool.add(result)
            key = self.registry.key_of(result)
            if key:
                self.makers[key].add(name)
        return None

    def prepare(self, bare, arguments):
        """Functions that last as long as they are told to are told to be short."""
        preparation = {"ExampleApplication_run": world.prepare_run, "Simulation_stepTo": world.prepare_steps}.get(bare)
        wanted = self.class_key("_zor." + bare, bare.split("_")[0])
        if preparation and arguments and self.registry.key_of(arguments[0]) == wanted and int(getattr(arguments[0], "this", arguments[0])):
            return preparation(arguments[0])
        return None

    def is_counted(self, value):
        return hasattr(value, "referenceCount") or hasattr(value, "getReferenceCount")

    def keep(self, name, arguments):
        """What the library holds by pointer without counting must be kept by the script: it stays to the end."""
        plain = ("Vec", "Quat", "Color", "Matrix", "Affine", "NeoCameraOutputValue", "SwigPyIterator")
        for value in arguments:
            held = not self.is_counted(value) and not type(value).__name__.startswith(plain) or "GeometryNodePtrVector" in name
            if hasattr(value, "__swig_destroy__") or type(value).__name__ == "SwigPyObject":
                if held and len(self.held) < 20_000:
                    self.held.append(value)

    def register(self, name, bare):
        """The right class, as the shadow module does at import: another one is for good."""
        module = sys.modules[name.split(".")[0][1:]]
        kind = getattr(module, bare.removesuffix("_swigregister"), None)
        if isinstance(kind, type):
            self.call(name, [kind])

    def undefined(self, name, bare, dice):
        if bare.endswith("__memory"):
            self.call(name, [self.fitting(None) if dice < 0.3 else self.pool.take(self.class_key(name, bare.removesuffix("__memory")))])
        elif dice < 0.4 or bare.endswith("_frompointer"):
            value = self.random.choice((None, 5, "x", object(), 1.5, [], self.null(self.random.choice(self.registry.keys()))))
            self.call(name, [value])
        else:
            self.destroy(name, bare)

    def class_key(self, name, kind):
        module = name.split(".")[0][1:]
        return next(filter(None, (self.registry.key(f"{space}::{kind} *") for space in (module, *MODULES))), None)

    def destroy(self, name, bare):
        """A new object, which nobody else knows."""
        kind = re.sub(r"^delete_|_unreference(NoDelete)?$", "", bare)
        module = name.split(".")[0][1:]
        maker = f"{module}.{kind}"
        made = self.call(maker, self.arguments(maker, 1.0, 2)) if maker in self.functions else None
        if made is None or not made.thisown:
            self.call(name, [None])
        elif bare.startswith("delete_"):
            self.call(name, [made])
        elif hasattr(made, "reference"):
            made.reference()
            self.call(name, [made])
        else:
            _zorOSG.Group_reference(made) if isinstance(made, osg.Group) else None
            self.call(name, [made if isinstance(made, osg.Group) else None])

    # ---- sessions

    def session(self, plain, random):
        self.random = self.pool.random = random
        self.plain = plain
        self.odd = values.objects()
        self.journal.write(f"call {self.number}: world")
        if not self.pool.objects or random.random() < 0.15:
            for item in world.scene():
                self.pool.add(item)
            for base in self.directors:
                for kind in (world.subclass(base, random), world.uninitialised(base)):
                    self.journal.write(f"call {self.number}: new {kind.__name__}")
                    try:
                        self.pool.add(kind())
                    except Exception as error:
                        assert rules.allowed("", error, []), error
        for _ in range(SESSION):
            if not self.deck:
                self.deck = [name for name in self.functions if self._bare(name) not in self.skipped]
                random.shuffle(self.deck)
            self.one(self.deck.pop())
        self.journal.write(f"call {self.number}: dropping objects")
        self.pool.thin()


def main(journal, start, calls, seconds, skipped=""):
    os.environ.pop("DISPLAY", None)
    signal.signal(signal.SIGALRM, signal.SIG_DFL)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    caller = Caller(Journal(journal), set(skipped.split(",")))
    with open("/proc/self/statm") as file:
        mapped = int(file.read().split()[0]) * resource.getpagesize()
    if values.LARGEST is None:
        resource.setrlimit(resource.RLIMIT_AS, (mapped + MEMORY, mapped + MEMORY))
    end = time.monotonic() + float(seconds)

    @seed(int(start))
    @settings(max_examples=10**9, database=None, deadline=None, phases=[Phase.generate], suppress_health_check=list(HealthCheck))
    @given(plain=values.plain(), number=st.integers(0, 2**63))
    def sessions(plain, number):
        if caller.number >= int(calls) or time.monotonic() > end:
            raise StopIteration
        caller.session(plain, randomness.Random(f"{start} {number}"))

    try:
        sessions()
    except StopIteration:
        pass
    report = {"calls": caller.number, "outcomes": caller.counts, "entries": len(caller.functions), "called": sorted(caller.called),
              "missed": sorted(set(caller.functions) - set(caller.called)), "shallow": sorted(set(caller.called) - caller.reached),
              "wrong": caller.wrong}
    with open("report.json", "w") as file:
        json.dump(report, file)
    # Objects go in whatever order the interpreter chooses: that must not crash either.
    caller.journal.write(f"call {caller.number}: end of the process")


if __name__ == "__main__":
    main(*sys.argv[1:])
