// Every class that the module zorCollide wraps; read by the modules that import it as well.
#pragma once

#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Compound.h>
#include <zorCollide/Cone.h>
#include <zorCollide/ContactPoint.h>
#include <zorCollide/Convex.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/GeometryContact.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/RayHit.h>
#include <zorCollide/RenderData.h>
#include <zorCollide/Shape.h>
#include <zorCollide/Space.h>
#include <zorCollide/Sphere.h>
#include <zorCollide/TextureData.h>
#include <zorCollide/Trimesh.h>
#include <zorSDK/Simulation.h>
