"""What one call from Python costs: flat function against shadow class, values in and out, callbacks.

python bench_calls.py [PATTERN]   (as `./zor bench` does)
"""

import re
import sys
import timeit

import _zor
import zor

REPEATS = 7


class Plain:
    """The yardstick: a method in Python that returns a stored value."""

    def __init__(self):
        self.value = (0.0, 0.0, 0.0)

    def get_position(self):
        return self.value


def cases():
    body = zor.RigidBody("body")
    position = zor.Vec3(1, 2, 3)
    plain = Plain()
    return {
        "Python method": lambda: plain.get_position(),
        "getPosition, flat": lambda get=_zor.RigidBody_getPosition: get(body),
        "getPosition, class": lambda: body.getPosition(),
        "setPosition, flat": lambda put=_zor.RigidBody_setPosition: put(body, position),
        "setPosition, class": lambda: body.setPosition(position),
        "new Vec3": lambda: zor.Vec3(1, 2, 3),
        "Vec3 addition": lambda: position + position,
        "getName": lambda: body.getName(),
    }


def measure(function):
    """Seconds a call: the best of several rounds, less the cost of the empty loop."""
    timer = timeit.Timer(function)
    number, _ = timer.autorange()
    empty = min(timeit.Timer(lambda: None).repeat(REPEATS, number))
    return (min(timer.repeat(REPEATS, number)) - empty) / number


def main(pattern):
    print(f"{'call':<24}{'ns a call':>12}")
    for name, function in cases().items():
        if re.search(pattern, name):
            print(f"{name:<24}{1e9 * measure(function):>12.0f}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else ""))
