// A variable whose type is a class is set from a pointer, which must not be null. The typemap is found for variables
// of plain types as well, which come by value.

%{
// Pointers to functions may be null.
template <class T>
  requires(!std::is_function_v<T>)
static bool zorIsMissing(T* object) {
  return !object;
}
template <class T>
static bool zorIsMissing(T const&) {
  return false;
}

template <class T>
  requires(!std::is_function_v<T>)
static T const& zorMember(T* object) {
  return *object;
}
template <class T>
static T const& zorMember(T const& value) {
  return value;
}
%}

%typemap(memberin, noblock=1) SWIGTYPE {
  if (zorIsMissing($input)) {
    SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference in method '$symname', argument 2 of type '$type *'");
  }
  $1 = zorMember($input);
}
