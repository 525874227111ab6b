// Finding nodes again.
%{
#include "runtime/NodeVector.h"
typedef zorBinding::WatchedNodes<zorOSG::GeometryNode> ZorWatchedNodes;

static zorOSG::GeometryNode* zorWatched(zorOSG::GeometryNode* node) { return ZorWatchedNodes::instance().watch(node); }
%}

// What is found may die before the vector is read.
%typemap(out) zorOSG::GeometryNodePtrVector {
  for (zorOSG::GeometryNode* const node : $1) zorWatched(node);
  $result = SWIG_NewPointerObj(new $1_ltype($1), $&1_descriptor, SWIG_POINTER_OWN);
}

%include <zorOSG/Lookup.h>
