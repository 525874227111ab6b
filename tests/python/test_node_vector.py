"""The vector of nodes that look-ups return."""

import pytest

import zorOSG
from conventions import error_text


def test_node_vector_counts_from_the_start():
    vector = zorOSG.GeometryNodePtrVector()
    nodes = [zorOSG.GeometryNode() for _ in range(4)]
    for node in nodes:
        vector.append(node)
    assert len(vector) == 4 and vector.capacity() >= 4
    assert error_text(IndexError, vector.__getitem__, -1) == "index"
    assert error_text(ValueError, vector.GetRange, 2, 3) == "invalid range"
    assert error_text(IndexError, vector.GetRange, 0, -1) == "count"
    assert error_text(ValueError, vector.GetRange, 1, 2**31 - 1) == "invalid range"
    last = vector.GetRange(1, 3)
    assert len(last) == 3 and not last.thisown
    assert vector.IndexOf(nodes[2]) == 2 and vector.IndexOf(None) == -1
    assert vector.__delitem__(nodes[1]) is True and vector.__delitem__(nodes[1]) is False
    vector.Reverse()
    assert vector[0].this == nodes[3].this
    vector.InsertRange(1, vector)
    assert len(vector) == 6
    assert error_text(IndexError, zorOSG.GeometryNodePtrVector, -5) == "capacity"
    with pytest.raises(SystemError):
        iter(vector)
