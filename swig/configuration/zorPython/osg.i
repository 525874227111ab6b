%module(threads="1", docstring="The scene graph: nodes, geometry, state, images and values of OpenSceneGraph.") osg

// The library's own headers lean on macros and templates that have no place in Python, so the part of the scene
// graph that scripts use is declared here by hand, one section per subject.

%{
#include "headers/osg.h"
%}

%include "shared/common.i"
%include "shared/interpreter.i"
%include "shared/scene_graph.i"
%include "shared/iterators.i"
%include <std_vector.i>
%include "osg/docs.i"
%include "osg/results.i"
%include "osg/values.i"
%include "osg/nodes.i"
%include "osg/geometry.i"
%include "osg/state.i"
%include "osg/image.i"
