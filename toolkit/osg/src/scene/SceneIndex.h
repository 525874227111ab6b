#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include <osg/Group>

#include "Ancestry.h"

namespace zorOSG {

/**
 * Makes nodes or drawables of one class findable, without a walk through the scene, as long as they live. The
 * class has an entry as its last member:
 *
 *     IndexEntry<Trail> m_indexEntry{*this};                // findFirstBelow<Trail>(root)
 *     IndexEntry<Renderer> m_indexEntry{*this, m_object};   // findFirstBelow<Renderer>(root, object)
 *
 * Where the node stands is looked up when it is searched: it may be put anywhere, by anybody.
 */
template <class NodeType>
class IndexEntry {
public:
  /** \param key - the object that the node is found by; null if it is found by its class alone */
  explicit IndexEntry(NodeType& node, void const* key = nullptr) {
    Index& index = Index::instance();
    std::lock_guard const lock(index.mutex);
    m_place = index.nodes.emplace(Place{key, ++index.lastNumber}, &node).first->first;
  }
  ~IndexEntry() {
    Index& index = Index::instance();
    std::lock_guard const lock(index.mutex);
    index.nodes.erase(m_place);
  }
  IndexEntry(IndexEntry const&) = delete; // a copied node makes its own
  IndexEntry& operator=(IndexEntry const&) = delete;

  /** \return of the nodes at or below root, the one that was made first; null if there is none */
  static NodeType* findFirst(osg::Group const* root, void const* key) {
    Index& index = Index::instance();
    std::lock_guard const lock(index.mutex);
    for (auto it = index.nodes.lower_bound(Place{key, 0}); it != index.nodes.end(); ++it) {
      if (it->first.first != key)
        break;
      if (isAtOrBelow(it->second, root))
        return it->second;
    }
    return nullptr;
  }

private:
  using Place = std::pair<void const*, std::uint64_t>; // key, and the order in which nodes were made

  struct Index {
    std::mutex mutex;
    std::uint64_t lastNumber = 0;
    std::map<Place, NodeType*> nodes;

    static Index& instance() {
      static Index& index = *new Index; // never destroyed: nodes in static storage may go later
      return index;
    }
  };

  Place m_place;
};

/** \return the first node of a class at or below root that has an entry under a key, or null */
template <class NodeType>
NodeType* findFirstBelow(osg::Group const* root, void const* key = nullptr) {
  return root ? IndexEntry<NodeType>::findFirst(root, key) : nullptr;
}

} // namespace zorOSG
