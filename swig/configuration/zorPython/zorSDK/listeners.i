// Listeners: classes that Python may derive from. The module that derives its own input listener from the one
// here names its class and file in the reports.

%feature("director") zorSDK::StepEventListener;
%feature("director") zorSDK::ContactEventListener;
%feature("director") zorSDK::GuiEventListener;

#ifndef ZOR_GUI_LISTENER
%define ZOR_GUI_LISTENER "zorSDK::GuiEventListener" %enddef
%define ZOR_GUI_FILE "zorSDK.i" %enddef
%define ZOR_GUI_LINES 78 %enddef
#endif

ZOR_SCRIPT_MANAGED(zorSDK::EventListener::addNotification, "zorSDK::EventListener::addNotification", "addNotification", "zorSDK.i", 74, )
ZOR_SCRIPT_MANAGED(zorSDK::EventListener::removeNotification, "zorSDK::EventListener::removeNotification", "removeNotification", "zorSDK.i", 75, )

%define ZOR_GUI_EVENT(NAME, OFFSET, RESULT)
ZOR_SCRIPT_MANAGED(zorSDK::GuiEventListener::NAME, ZOR_GUI_LISTENER "::" #NAME, #NAME, ZOR_GUI_FILE, ZOR_GUI_LINES + OFFSET, RESULT)
%enddef
ZOR_GUI_EVENT(update, 0, )
ZOR_GUI_EVENT(keyboard, 1, false)
ZOR_GUI_EVENT(mouse, 2, false)
ZOR_GUI_EVENT(mouseMoved, 3, false)
ZOR_GUI_EVENT(mouseDragged, 4, false)

// A step goes on after an error only where a script manager takes it; without one the error ends the step and
// reaches the script that called it.
%define ZOR_STEP_EVENT(CLASS, NAME, LINE, RESULT)
ZOR_CALLBACK(zorSDK::CLASS::NAME, RESULT)
%feature("director:except") zorSDK::CLASS::NAME {
  if ($error != NULL) {
    if (!zorBinding::registerStepError("zorSDK::" #CLASS "::" #NAME, #NAME, "swig/configuration/zorPython/zorSDK.i", LINE)) {
      Swig::DirectorMethodException::raise("Error detected when calling '" #CLASS "." #NAME "'");
    }
    return RESULT;
  }
}
%enddef
ZOR_STEP_EVENT(StepEventListener, preCollide, 85, )
ZOR_STEP_EVENT(StepEventListener, pre, 86, )
ZOR_STEP_EVENT(StepEventListener, post, 87, )
ZOR_STEP_EVENT(StepEventListener, last, 88, )
ZOR_STEP_EVENT(ContactEventListener, impact, 91, zorSDK::ContactEventListener::KEEP_CONTACT)
ZOR_STEP_EVENT(ContactEventListener, contact, 92, zorSDK::ContactEventListener::KEEP_CONTACT)
ZOR_STEP_EVENT(ContactEventListener, separation, 93, )

ZOR_STANDARD(zorSDK::EventListener::setMask, )
ZOR_LENT_VALUE_TO_CALLBACK(zor::AffineMatrix4x4T<double>)
ZOR_LENT_VALUE_TO_CALLBACK(zorCollide::GeometryContact)
ZOR_LENT_TO_CALLBACK(zorCollide::Geometry)
ZOR_STANDARD(zorSDK::GuiEventListener::setInverseTransform, )
ZOR_UPCALL(zorSDK::EventListener, setMask, (arg2))
ZOR_UPCALL(zorSDK::EventListener, addNotification, ())
ZOR_UPCALL(zorSDK::EventListener, removeNotification, ())

%include <zorSDK/EventListener.h>
%include <zorSDK/StepEventListener.h>
%include <zorSDK/ContactEventListener.h>
ZOR_INNER_RESULT(zorSDK::GuiEventListener::getInverseTransform)
%include <zorSDK/GuiEventListener.h>
