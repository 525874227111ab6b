// The object of a method is a pointer, so the generator would take None for it and call through null. A `check` would
// come too late: after the other arguments, of which the first wrong one has to be named.

%typemap(in, noblock=1) SWIGTYPE* self (void* argp = 0, int res = 0) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, $disown | %convertptr_flags);
  if (!SWIG_IsOK(res)) {
    %argument_fail(res, "$type", $symname, $argnum);
  }
  if (!argp) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = %reinterpret_cast(argp, $ltype);
}
