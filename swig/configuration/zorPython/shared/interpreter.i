// The type registry holds Python classes of the interpreter that registered them, so a second interpreter that
// imports the modules would leave dangling ones behind. Read by the modules that import no other of the family.

%rename(_requireMainInterpreter) zorBinding::requireMainInterpreter;
namespace zorBinding {
void requireMainInterpreter();
}
%pythoncode %{
_requireMainInterpreter()
%}
