// The application.
%include <zorOSG/ExampleApplication.h>
