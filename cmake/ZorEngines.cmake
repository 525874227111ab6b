# Imported targets for the engines that have no usable CMake package of their own.

find_package(PkgConfig REQUIRED)
find_package(Python3 3.14 EXACT REQUIRED COMPONENTS Interpreter Development)
find_package(CLI11 REQUIRED)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)

function(zor_import_pkg name)
  pkg_check_modules(ZOR_${name} REQUIRED IMPORTED_TARGET ${ARGN})
  add_library(zor_${name} INTERFACE)
  add_library(zor::${name} ALIAS zor_${name})
  target_include_directories(zor_${name} SYSTEM INTERFACE ${ZOR_${name}_INCLUDE_DIRS})
  target_compile_options(zor_${name} INTERFACE ${ZOR_${name}_CFLAGS_OTHER})
  target_link_libraries(zor_${name} INTERFACE ${ZOR_${name}_LINK_LIBRARIES})
endfunction()

zor_import_pkg(Bullet bullet-float64)
zor_import_pkg(OpenSceneGraph openscenegraph openscenegraph-osg openscenegraph-osgDB openscenegraph-osgGA
  openscenegraph-osgText openscenegraph-osgUtil openscenegraph-osgViewer openscenegraph-osgShadow
  openscenegraph-osgSim openthreads)
zor_import_pkg(Egl egl gl)
zor_import_pkg(Urdf urdfdom console_bridge)
zor_import_pkg(X11 x11)

# Archives: binary by cereal, JSON by the parser that cereal comes with.
zor_import_pkg(Archives cereal RapidJSON)
