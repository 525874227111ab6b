%module(directors="1", threads="1", docstring="Cables: how they resist.") zorCable

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorCable.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

%copyctor zorCable::CableProperties;
%ignore zorCable::CableProperties::operator==;
%feature("python:maybecall") zorCable::CableProperties::__eq__;
%extend zorCable::CableProperties {
  bool __eq__(zorCable::CableProperties const& other) const { return *$self == other; }
}
ZOR_COPIED(zorCable::CableProperties)
%include <zorCable/CableProperties.h>
