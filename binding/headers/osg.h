// Every class that the module osg wraps; read by the modules that import it as well.
#pragma once

#include <osg/BoundingBox>
#include <osg/BoundingSphere>
#include <osg/Camera>
#include <osg/ClipNode>
#include <osg/ComputeBoundsVisitor>
#include <osg/CopyOp>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/Image>
#include <osg/LightSource>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/Matrixd>
#include <osg/PositionAttitudeTransform>
#include <osg/Program>
#include <osg/ShapeDrawable>
#include <osg/StateSet>
#include <osg/Switch>
#include <osg/Texture2D>
#include <osg/TextureCubeMap>
#include <osg/Uniform>
#include <tuple>
#include <set>
#include <vector>
