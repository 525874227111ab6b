%module(directors="1", threads="1", docstring="Shapes, geometries, spaces, contacts and rays.") zorCollide

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
import zorRender
%}

%{
#include "headers/zor.h"
#include "headers/zorRender.h"
#include "headers/zorCollide.h"
%}

%include "shared/toolkit.i"
%import "zor.i"
%import "zorRender.i"

ZOR_SHARED(zorCollide::Shape)
ZOR_SHARED(zorCollide::Geometry)
ZOR_SHARED(zorCollide::Space)
ZOR_SHARED(zorCollide::TextureData)

ZOR_INNER_RESULT(zorCollide::Geometry::getGroups)
ZOR_INNER_RESULT(zorCollide::GeometryContact::getPoints)

%include <zorCollide/Shape.h>
%include <zorCollide/Box.h>
%include <zorCollide/Sphere.h>
%include <zorCollide/Capsule.h>
%include <zorCollide/Cylinder.h>
%include <zorCollide/Cone.h>
%include <zorCollide/Plane.h>
%include <zorCollide/Convex.h>
%include <zorCollide/Trimesh.h>
%include <zorCollide/HeightField.h>
%include <zorCollide/Compound.h>
%include <zorCollide/RenderData.h>
%include <zorCollide/TextureData.h>

%include <zorCollide/ContactPoint.h>
%include <zorCollide/Geometry.h>
ZOR_OBJECT_VECTOR(ContactPointVector, zorCollide::ContactPoint)
%include <zorCollide/GeometryContact.h>
ZOR_OBJECT_VECTOR(LocalGeometryContactVector, zorCollide::GeometryContact)
%include <zorCollide/RayHit.h>
ZOR_OBJECT_VECTOR(RayHitVector, zorCollide::RayHit)
%include <zorCollide/Space.h>
