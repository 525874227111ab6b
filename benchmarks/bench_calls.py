"""What a call from Python costs: the same C++ functions through this project's flat functions and shadow classes,
through nanobind, and through the C interface by hand, timed in turns in one process.

python bench_calls.py   (as `./zor bench calls` does)
"""

import re
import subprocess
import sys
import time
import timeit

ROUNDS = 15
FIRED = 1000


def namespaces():
    """The objects that each binding's statements use."""
    import _callcost
    import callcost
    import callcost_capi
    import callcost_nanobind

    def of(module, **names):
        class Recorder(getattr(module, "Listener", object)):
            def frame(self, number):
                pass

        series = module.Series()
        result = {"p": module.Probe(), "q": module.Probe(), "v": module.Value(), "s": series, "r": Recorder(), "m": module, **names}
        for _ in range(4):
            (names["f"].append if module is callcost_capi else type(series).append)(series, result["v"])
        return result

    return {
        "flat": of(callcost, f=_callcost),
        "method": of(callcost, f=_callcost),
        "nanobind": of(callcost_nanobind),
        "C": of(callcost_capi, f=callcost_capi),
    }


# name: flat, shadow method and nanobind, C interface by hand; how many calls the statement makes
CASES = {
    "float getter": ("getFloat(p)", "p.getFloat()", "getFloat(p)", 1),
    "float setter": ("setFloat(p, 1.5)", "p.setFloat(1.5)", "setFloat(p, 1.5)", 1),
    "object argument": ("attach(p, q)", "p.attach(q)", "attach(p, q)", 1),
    "value result": ("getValue(p)", "p.getValue()", "getValue(p)", 1),
    "string argument": ("setName(p, 'wheel')", "p.setName('wheel')", "setName(p, 'wheel')", 1),
    "overloads, 2": ("pick(p, 1.5)", "p.pick(1.5)", "pick(p, 1.5)", 1),
    "single, 4 arguments": ("paintOne(p, v, 'wheel', 1)", "p.paintOne(v, 'wheel', 1)", "paint(p, v, 'wheel', 1)", 1),
    "overloads, 31": ("paint(p, v, 'wheel', 1)", "p.paint(v, 'wheel', 1)", "paint(p, v, 'wheel', 1)", 1),
    "vector append, pop": ("append(s, v); pop(s)", "s.append(v); s.pop()", "append(s, v); pop(s)", 2),
    "vector index": ("item(s, 1)", "s[1]", "item(s, 1)", 1),
    "director callback": (f"fire(r, {FIRED})", f"m.fire(r, {FIRED})", f"fire(r, {FIRED})", FIRED),
}

# The flat names of what the table above calls by its short one.
FLAT = {
    "getFloat": "Probe_getFloat", "setFloat": "Probe_setFloat", "attach": "Probe_attach", "getValue": "Probe_getValue",
    "setName": "Probe_setName", "pick": "Probe_pick", "paintOne": "Probe_paintOne", "paint": "Probe_paint",
    "append": "Series_append", "pop": "Series_pop", "item": "Series___getitem__", "fire": "fire",
}


def timers(case, spaces):
    """One timer a binding, its functions bound to local names beforehand."""
    flat, method, by_hand, _ = CASES[case]
    used = [name for name in FLAT if re.search(rf"\b{name}\(", flat)]
    objects = "p, q, v, s, r, m = [names[k] for k in 'pqvsrm']\n"
    result = {}
    for binding, names in spaces.items():
        statement = {"flat": flat, "C": by_hand}.get(binding, method)
        setup = objects
        if binding == "flat":
            setup += "\n".join(f"{name} = names['f'].{FLAT[name]}" for name in used)
        elif binding == "C":
            setup += "\n".join(f"{name} = names['f'].{name}" for name in set(re.findall(r"(\w+)\(", by_hand)))
        result[binding] = timeit.Timer(statement, setup, globals={"names": names})
    return result


def measure(case, spaces):
    """Seconds a call of each binding: the best of many rounds taken in turns, less the empty loop."""
    calls = CASES[case][3]
    runs = timers(case, spaces)
    number = max(1, int(0.01 / min(timer.timeit(1000 // calls or 1) / (1000 // calls or 1) for timer in runs.values())))
    empty = timeit.Timer("pass")
    best = dict.fromkeys(runs, float("inf"))
    loop = float("inf")
    for _ in range(ROUNDS):
        loop = min(loop, empty.timeit(number))
        for binding, timer in runs.items():
            best[binding] = min(best[binding], timer.timeit(number))
    return {binding: (seconds - loop) / number / calls for binding, seconds in best.items()}


def import_time(module):
    """Seconds to import a module and all it needs, in a fresh interpreter, less the start of the interpreter."""
    def start(code):
        best = float("inf")
        for _ in range(7):
            begin = time.perf_counter()
            subprocess.run([sys.executable, "-c", code], check=True)
            best = min(best, time.perf_counter() - begin)
        return best
    return start(f"import {module}") - start("pass")


def main():
    spaces = namespaces()
    print(f"{'call':<22}{'flat':>8}{'method':>8}{'nanobind':>10}{'C API':>8}{'flat/nb':>10}{'method/nb':>11}   (ns)")
    cost = {}
    for case in CASES:
        cost[case] = measure(case, spaces)
        flat, method, nanobind, by_hand = (1e9 * cost[case][binding] for binding in ("flat", "method", "nanobind", "C"))
        print(f"{case:<22}{flat:>8.1f}{method:>8.1f}{nanobind:>10.1f}{by_hand:>8.1f}{flat / nanobind:>10.2f}{method / nanobind:>11.2f}",
              flush=True)
    ratio = cost["overloads, 31"]["flat"] / cost["single, 4 arguments"]["flat"]
    print(f"overload set of 31 / single function: flat {ratio:.2f}, "
          f"method {cost['overloads, 31']['method'] / cost['single, 4 arguments']['method']:.2f}")
    print(f"import of all modules: {import_time('zorOSG'):.3f} s")
    return 0


if __name__ == "__main__":
    sys.exit(main())
