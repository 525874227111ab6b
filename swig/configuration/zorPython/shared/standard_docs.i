// What the docstrings of standard vectors and their iterators say: the library's declarations have no comments.

%define ZOR_VECTOR_DOC(METHOD, TEXT)
%feature("docstring") std::vector::METHOD TEXT;
%enddef

%feature("docstring") std::vector
"Values in a row, stored as in C++: a sequence that is made from any iterable, indexed, sliced and iterated."
ZOR_VECTOR_DOC(vector, "Creates an empty vector, a copy of the elements of an iterable, or a number of elements: new ones, or copies of a value.")
ZOR_VECTOR_DOC(iterator, ":return: an iterator over the elements, which stops at the end")
ZOR_VECTOR_DOC(begin, ":return: an iterator at the first element")
ZOR_VECTOR_DOC(end, ":return: an iterator behind the last element")
ZOR_VECTOR_DOC(size, ":return: the number of elements")
ZOR_VECTOR_DOC(empty, ":return: true if there are no elements")
ZOR_VECTOR_DOC(capacity, ":return: the number of elements that there is room for without moving them")
ZOR_VECTOR_DOC(reserve, "Makes room for a number of elements; BufferError while a buffer is in use.")
ZOR_VECTOR_DOC(resize, "Drops elements from the end, or adds copies of a value, or new ones, until there is the given number.")
ZOR_VECTOR_DOC(clear, "Removes all elements.")
ZOR_VECTOR_DOC(append, "Adds a copy of a value at the end.")
ZOR_VECTOR_DOC(push_back, "Adds a copy of a value at the end.")
ZOR_VECTOR_DOC(pop, "Removes the last element. :return: it :raises: IndexError if there is none")
ZOR_VECTOR_DOC(pop_back, "Removes the last element. :raises: IndexError if there is none")
ZOR_VECTOR_DOC(front, ":return: the first element, where it stands :raises: IndexError if there is none")
ZOR_VECTOR_DOC(back, ":return: the last element, where it stands :raises: IndexError if there is none")
ZOR_VECTOR_DOC(assign, "Replaces all elements by copies of a value.")
ZOR_VECTOR_DOC(insert, "Inserts one copy of a value, or a number of them, before a position of this vector.")
ZOR_VECTOR_DOC(erase, "Removes the element at a position of this vector, or those between two. :return: the position behind")
ZOR_VECTOR_DOC(swap, "Exchanges all elements with another vector.")
ZOR_VECTOR_DOC(get_allocator, ":return: the allocator of the storage, which scripts can only pass on")

%define ZOR_ITERATOR_DOC(METHOD, TEXT)
%feature("docstring") swig::SwigPyIterator::METHOD TEXT;
%enddef

%feature("docstring") swig::SwigPyIterator "A position in a standard vector, which it keeps alive."
ZOR_ITERATOR_DOC(value, ":return: the element :raises: StopIteration outside of the vector")
ZOR_ITERATOR_DOC(incr, "Moves forward, by one or by a number of elements. :return: this iterator")
ZOR_ITERATOR_DOC(decr, "Moves backward, by one or by a number of elements. :return: this iterator")
ZOR_ITERATOR_DOC(distance, ":return: how many elements the other position, of the same vector, lies behind this one")
ZOR_ITERATOR_DOC(equal, ":return: true if both stand at the same position of the same vector")
ZOR_ITERATOR_DOC(copy, ":return: another iterator at this position")
ZOR_ITERATOR_DOC(next, "Moves forward. :return: the element before the step :raises: StopIteration at the end")
ZOR_ITERATOR_DOC(previous, "Moves backward. :return: the element after the step :raises: StopIteration at the start")
ZOR_ITERATOR_DOC(advance, "Moves by a number of elements, which may be negative. :return: this iterator")
