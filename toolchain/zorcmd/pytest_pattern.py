"""A pytest plugin: keeps the tests whose name matches the regular expression in ZOR_TEST_PATTERN."""

import os
import re


def pytest_collection_modifyitems(config, items):
    pattern = os.environ.get("ZOR_TEST_PATTERN")
    if not pattern:
        return
    kept = [item for item in items if re.search(pattern, item.nodeid)]
    config.hook.pytest_deselected(items=[item for item in items if item not in kept])
    items[:] = kept
