// A rectangle on the screen. Scripts get one from createPanel(), a function of another module.
%ignore zorOSG::createPanel;
%nodefaultctor zorOSG::Panel;
%nodefaultdtor zorOSG::Panel;
%include <zorOSG/Panel.h>
