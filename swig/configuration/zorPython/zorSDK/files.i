// A simulation as bytes, and with them pickled and copied.

%typemap(in) std::string_view bytes (Py_buffer view = {}) {
  if (PyObject_GetBuffer($input, &view, PyBUF_SIMPLE) != 0) {
    SWIG_fail;
  }
  $1 = std::string_view(static_cast<char const*>(view.buf), static_cast<size_t>(view.len));
}
%typemap(freearg) std::string_view bytes {
  PyBuffer_Release(&view$argnum);
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_STRING) std::string_view bytes {
  $1 = PyObject_CheckBuffer($input);
}
%typemap(out) std::string zorSDK::Simulation::toBytes {
  $result = PyBytes_FromStringAndSize($1.data(), static_cast<Py_ssize_t>($1.size()));
}

%pythoncode %{
def _simulationOfBytes(data: bytes) -> "Simulation":
    simulation = Simulation()
    simulation.fromBytes(data)
    return simulation
%}

%extend zorSDK::Simulation {
  %pythoncode %{
    def __reduce__(self) -> tuple[object, tuple[bytes]]:
        return _simulationOfBytes, (self.toBytes(),)
  %}
}
