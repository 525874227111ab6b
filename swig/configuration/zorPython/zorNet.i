%module(directors="1", threads="1", docstring="Connections to other programs.") zorNet

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorNet.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

%copyctor zorNet::Endpoint;
%ignore zorNet::Endpoint::operator==;
ZOR_RECORD(zorNet::Endpoint, Endpoint, self.getHost(), self.getPort())
%extend zorNet::Endpoint {
  %pythoncode %{
    def __str__(self):
        return self.str()
  %}
}
%include <zorNet/Endpoint.h>
