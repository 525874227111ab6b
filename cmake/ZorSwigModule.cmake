# Filled in with the first module; see swig/CMakeLists.txt.
