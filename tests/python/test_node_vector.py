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


def test_node_vector_is_a_list_of_pointers():
    nodes = [zorOSG.GeometryNode() for _ in range(4)]

    def vector_of(*places):
        vector = zorOSG.GeometryNodePtrVector(2)
        for place in places:
            vector.append(nodes[place])
        return vector

    def places(vector):
        return [[node.this for node in nodes].index(vector[i].this) for i in range(len(vector))]

    vector = vector_of(0, 1, 2, 3)
    vector.Insert(4, nodes[0])
    vector.Insert(0, nodes[3])
    assert places(vector) == places(zorOSG.GeometryNodePtrVector(vector)) == [3, 0, 1, 2, 3, 0]
    assert (vector.IndexOf(nodes[3]), vector.LastIndexOf(nodes[3])) == (0, 4)
    vector.AddRange(vector_of(1))
    vector.RemoveAt(0)
    vector.RemoveRange(1, 2)
    assert places(vector) == [0, 3, 0, 1] and places(vector.GetRange(1, 2)) == [3, 0]
    vector.SetRange(2, vector_of(2, 2))
    vector.Reverse(0, 3)
    assert places(vector) == [2, 3, 0, 2]
    repeated = zorOSG.GeometryNodePtrVector.Repeat(nodes[1], 3)
    assert places(repeated) == [1, 1, 1] and not repeated.thisown
    for call in (lambda: vector.Insert(5, None), lambda: vector.InsertRange(-1, vector), lambda: vector.RemoveAt(4),
                 lambda: vector.__setitem__(4, None), lambda: vector.SetRange(3, repeated), lambda: vector.SetRange(-1, repeated),
                 lambda: vector.GetRange(-1, 1), lambda: vector.RemoveRange(-1, 9), lambda: vector.Reverse(-1, 1)):
        assert error_text(IndexError, call) == "index"
    for call in (lambda: vector.RemoveRange(0, -1), lambda: vector.Reverse(0, -1), lambda: vector.Repeat(None, -1)):
        assert error_text(IndexError, call) == "count"
    for call in (lambda: vector.RemoveRange(3, 2), lambda: vector.Reverse(2**31 - 1, 2**31 - 1)):
        assert error_text(ValueError, call) == "invalid range"
    vector[1] = None
    assert None in vector and vector[1] is None and places(vector_of()) == []
    del nodes[0]  # and with it the node, which vectors do not hold
    assert len(vector) == 4 and vector[2] is None and vector.GetRange(2, 1)[0] is None and vector[3] == nodes[1]
