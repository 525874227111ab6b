%module(directors="1", threads="1") probe

// A module of the tests, generated in every respect like the visualisation layer's own.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "Probe.h"
%}

%define ZOR_BORROWED_RESULTS %enddef
%include "shared/toolkit.i"
%import "zor.i"

%apply zor::Vec2i const& LIST { zor::Vec2i const& size };
%apply zor::RealVector const& LIST { zor::RealVector const& numbers };
ZOR_RELEASED_BY_DELETE(probe, Released)
%ignore probe::LateDelete::requestDelete;
%extend probe::Reluctant {
  ~Reluctant() {
    delete $self;
    throw std::runtime_error("not willing");
  }
}

%include "../../../tests/binding/Probe.h"
