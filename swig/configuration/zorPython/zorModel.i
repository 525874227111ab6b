%module(directors="1", threads="1", docstring="Models beyond single bodies: robots and meshes from files, pressure on a surface.") zorModel

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
import zorRender
import zorCollide
import zorSDK
%}

%{
#include "headers/zor.h"
#include "headers/zorRender.h"
#include "headers/zorCollide.h"
#include "headers/zorSDK.h"
#include "headers/zorModel.h"
%}

%include "shared/toolkit.i"
%import "zor.i"
%import "zorRender.i"
%import "zorCollide.i"
%import "zorSDK.i"

ZOR_SHARED(zorModel::PressureFieldRenderer)

%copyctor zorModel::TriangleData;
%ignore zorModel::TriangleData::operator==;
ZOR_RECORD(zorModel::TriangleData, TriangleData,
           *(self.getVertex(i) for i in range(3)), *(self.getPressure(i) for i in range(3)))
%include <zorModel/TriangleData.h>
%nodefaultctor zorModel::PressureFieldRenderer;
%include <zorModel/PressureFieldRenderer.h>

%include <zorModel/ReadMesh.h>

%copyctor zorModel::UrdfJoint;
%extend zorModel::UrdfJoint {
  %pythoncode %{
    def __repr__(self) -> str:
        kind = ("FIXED", "REVOLUTE", "CONTINUOUS", "PRISMATIC", "FLOATING", "PLANAR")[self.type]
        return f"<UrdfJoint {self.name!r}: {kind}, {self.parent!r} to {self.child!r}>"
  %}
}
%immutable;
%include <zorModel/UrdfJoint.h>
%mutable;
ZOR_OBJECT_VECTOR(UrdfJointVector, zorModel::UrdfJoint)
ZOR_INNER_RESULT(zorModel::UrdfReader::getJoints)
%include <zorModel/UrdfReader.h>

ZOR_SHARED(zorModel::PressureFieldRenderer)

%copyctor zorModel::TriangleData;
%ignore zorModel::TriangleData::operator==;
ZOR_RECORD(zorModel::TriangleData, TriangleData,
           *(self.getVertex(i) for i in range(3)), *(self.getPressure(i) for i in range(3)))
%include <zorModel/TriangleData.h>
%nodefaultctor zorModel::PressureFieldRenderer;
%include <zorModel/PressureFieldRenderer.h>
