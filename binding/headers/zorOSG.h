// Every class that the module zorOSG wraps.
#pragma once

#include <zorOSG/CameraData.h>
#include <zorOSG/CreateAxes.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/ExampleApplicationListener.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/GuiEventListener.h>
#include <zorOSG/ImageCapture.h>
#include <zorOSG/ImageCaptureBase.h>
#include <zorOSG/LightSource.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/NodeReference.h>
#include <zorOSG/Primitives.h>
#include <zorOSG/ReadNode.h>
#include <zorOSG/RenderState.h>
#include <zorOSG/RenderTarget.h>
#include <zorOSG/RenderToImage.h>
#include <zorOSG/RenderToTexture.h>
#include <zorOSG/RigidBodyRenderCache.h>
#include <zorOSG/SceneDecorator.h>
#include <zorOSG/SceneDescription.h>
#include <zorOSG/Text.h>
#include <zorOSG/Texture2D.h>
#include <zorOSG/Transform.h>
#include <zorOSG/VideoFFMPEGPipeCapture.h>
