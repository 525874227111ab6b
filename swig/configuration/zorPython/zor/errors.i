// Exceptions of the standard library that wrappers raise as objects of their own type.

%{
#include <stdexcept>
%}

%exceptionclass std::invalid_argument;
%feature("python:abc", "RuntimeError") std::invalid_argument;

namespace std {

/** An argument that makes no sense; in Python a RuntimeError. */
class invalid_argument {
public:
  invalid_argument(std::string const& text);
  char const* what() const;
  %extend {
    char const* __str__() const { return $self->what(); }
  }
};

} // namespace std
