%module(directors="1", threads="1", docstring="The scene graph: nodes, geometry, state, images and values of OpenSceneGraph.") osg

// The library's own headers lean on macros and templates that have no place in Python, so the part of the scene
// graph that scripts use is declared here by hand, one section per subject.

%{
#include <cmath>
#include <functional>
#include <map>
#include "headers/osg.h"
%}

%include "shared/common.i"
%include "shared/directors.i"
%include "shared/interpreter.i"
%include "shared/scene_graph.i"
%include "shared/iterators.i"
%include <std_vector.i>
%include "osg/docs.i"
%include "osg/results.i"
%include "osg/gl.i"
%include "osg/values.i"
%include "osg/objects.i"
%include "osg/visitors.i"
%include "osg/nodes.i"
%include "osg/transforms.i"
%include "osg/arrays.i"
%include "osg/primitives.i"
%include "osg/geometry.i"
%include "osg/shapes.i"
%include "osg/attributes.i"
%include "osg/textures.i"
%include "osg/shaders.i"
%include "osg/state.i"
%include "osg/image.i"
%include "osg/image_vector.i"
%include "osg/tools.i"
