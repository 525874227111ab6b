// The vector of nodes that the lookup functions return: pointers that it does not own. Positions count from the
// start only. A node that has died is read as None.

%{
typedef zor::Vector<zorOSG::GeometryNode*> ZorNodeVector;
typedef zorBinding::ListOperations<zorOSG::GeometryNode*> ZorNodeList;
%}

%define ZOR_NODE_VECTOR_GUARD(METHOD)
ZOR_SEQUENCE_GUARD(zor::Vector<zorOSG::GeometryNode*>::METHOD)
%enddef
ZOR_NODE_VECTOR_GUARD(Vector)
ZOR_NODE_VECTOR_GUARD(__getitem__)
ZOR_NODE_VECTOR_GUARD(__setitem__)
ZOR_NODE_VECTOR_GUARD(Insert)
ZOR_NODE_VECTOR_GUARD(InsertRange)
ZOR_NODE_VECTOR_GUARD(RemoveAt)
ZOR_NODE_VECTOR_GUARD(RemoveRange)
ZOR_NODE_VECTOR_GUARD(GetRange)
ZOR_NODE_VECTOR_GUARD(SetRange)
ZOR_NODE_VECTOR_GUARD(Repeat)
ZOR_NODE_VECTOR_GUARD(Reverse)

namespace zor {

/** Nodes in a row; the nodes are not owned. */
template <>
class Vector<zorOSG::GeometryNode*> {
public:
  /** Creates an empty vector. */
  Vector();
  /** Creates a copy of another vector, of the same nodes. */
  Vector(Vector const& other);
  %extend {
    /** \param capacity - number of nodes to make room for; negative raises IndexError */
    Vector(int capacity) { return ZorNodeList::create(capacity); }
  }
  /** Removes all nodes. */
  void clear();
  %extend {
    size_t __len__() const { return $self->size(); }
  }
  /** \return the number of nodes that there is room for without moving them */
  size_t capacity() const;
  /** Makes room for n nodes. */
  void reserve(size_t n);
  %extend {
    /** Adds a node at the end. */
    void append(zorOSG::GeometryNode* x) { $self->push_back(zorWatched(x)); }
    zorOSG::GeometryNode* __getitem__(int index) const {
      return ZorWatchedNodes::instance().alive((*$self)[zorBinding::checkedPosition(index, $self->size())]);
    }
    void __setitem__(int index, zorOSG::GeometryNode* val) {
      (*$self)[zorBinding::checkedPosition(index, $self->size())] = zorWatched(val);
    }
    /** Inserts a node before a position. IndexError for a position that is not 0 to the length. */
    void Insert(int index, zorOSG::GeometryNode* x) {
      $self->insert($self->begin() + zorBinding::checkedPosition(index, $self->size() + 1), zorWatched(x));
    }
    /** Inserts all nodes of another vector before a position. IndexError as Insert. */
    void InsertRange(int index, zor::Vector<zorOSG::GeometryNode*> const& values) {
      ZorNodeList::insertRange(*$self, index, values);
    }
    /** Adds all nodes of another vector at the end. */
    void AddRange(zor::Vector<zorOSG::GeometryNode*> const& values) {
      ZorNodeList::insertRange(*$self, static_cast<int>($self->size()), values);
    }
    /** Removes the node at a position. IndexError outside of the vector. */
    void RemoveAt(int index) { $self->erase($self->begin() + zorBinding::checkedPosition(index, $self->size())); }
    /** Removes count nodes from a position on. ValueError or IndexError for nodes that are not there. */
    void RemoveRange(int index, int count) { ZorNodeList::removeRange(*$self, index, count); }
    /** \return a new vector of count nodes from a position on. ValueError or IndexError for nodes that are not there. */
    zor::Vector<zorOSG::GeometryNode*>* GetRange(int index, int count) const {
      return ZorNodeList::getRange(*$self, index, count);
    }
    /** Replaces nodes from a position on by those of another vector, which must fit in: else IndexError. */
    void SetRange(int index, zor::Vector<zorOSG::GeometryNode*> const& values) {
      ZorNodeList::setRange(*$self, index, values);
    }
    /** \return the first position of a node; -1 if it is not there */
    int IndexOf(zorOSG::GeometryNode* value) const { return ZorNodeList::indexOf(*$self, value); }
    /** \return the last position of a node; -1 if it is not there */
    int LastIndexOf(zorOSG::GeometryNode* value) const { return ZorNodeList::lastIndexOf(*$self, value); }
    bool __contains__(zorOSG::GeometryNode* value) const { return $self->contains(value); }
    bool __delitem__(zorOSG::GeometryNode* value) { return ZorNodeList::removeValue(*$self, value); }
    /** Not iterable: positions are how nodes are reached. */
    PyObject* __iter__() { return nullptr; }
    /** \return a new vector that holds a node count times; IndexError for a negative count */
    static zor::Vector<zorOSG::GeometryNode*>* Repeat(zorOSG::GeometryNode* value, int count) {
      return new ZorNodeVector(zorBinding::checkedCount(count), zorWatched(value));
    }
    /** Turns the order around. */
    void Reverse() { std::reverse($self->begin(), $self->end()); }
    /** Turns the order of count nodes from a position on around. ValueError or IndexError for nodes that are not there. */
    void Reverse(int index, int count) { ZorNodeList::reverse(*$self, index, count); }
  }
  ~Vector();
};

} // namespace zor
%template(GeometryNodePtrVector) zor::Vector<zorOSG::GeometryNode*>;
