%module(directors="1", threads="1") callbacks

// A module of the tests that calls what Python overrides.
%pythonbegin %{
import zorOSG
%}

%{
#include "headers/osg.h"
#include "headers/osgDB.h"
#include "headers/osgText.h"
#include "headers/osgGA.h"
#include "headers/osgViewer.h"
#include "headers/zor.h"
#include "headers/zorStream.h"
#include "headers/zorIO.h"
#include "headers/zorRender.h"
#include "headers/zorCollide.h"
#include "headers/zorSDK.h"
#include "headers/zorOSG.h"
#include "Callbacks.h"
%}

%include "shared/toolkit.i"
%import "zorOSG.i"
%ignore callbacks::lastText;
%ignore callbacks::FailingListener::preFrame;
%ignore callbacks::FailingListener::postFrame;
%include "../../../tests/binding/Callbacks.h"
