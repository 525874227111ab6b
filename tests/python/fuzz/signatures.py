"""What a flat function takes, learned from its own error messages."""

import re

_ARGUMENT = re.compile(r"in method '(\w+)', argument (\d+) of type '(.*)'$", re.DOTALL)
_COUNT = re.compile(r"expected (?:at (most|least) )?(\d+) arguments?, got")


def _split(text):
    """Items of a parameter list; commas inside brackets don't separate."""
    items, depth, current = [], 0, ""
    for letter in text:
        depth += (letter in "<(") - (letter in ">)")
        if letter == "," and depth == 0:
            items.append(current)
            current = ""
        else:
            current += letter
    return [item.strip() for item in [*items, current] if item.strip()]


def _prototype(line):
    """Qualified name and parameter types of one line of a mismatch message."""
    depth = 0
    for position, letter in enumerate(line):
        if letter == "(" and depth == 0 and not line[:position].endswith("operator "):
            return line[:position].strip(), _split(line[position + 1:line.rindex(")")])
        depth += (letter == "<") - (letter == ">")
    return line, []


def _scope(qualified):
    """The class of a qualified name: everything before the last double colon outside brackets."""
    depth = 0
    for position in range(len(qualified) - 1, 0, -1):
        depth += (qualified[position] == ">") - (qualified[position] == "<")
        if depth == 0 and qualified[position - 1:position + 1] == "::":
            return qualified[:position - 1]
    return ""


class Signature:
    """Parameter lists of one function. A type is the declared text, or None while it is not known. Without a function to
    ask there is one parameter of any type."""

    def __init__(self, name, function):
        self.name = name
        self.forms = [[]]
        self.overloaded = False
        if function is None:
            self.forms = [[None]]
            return
        try:
            function(*[object()] * 40)
        except (TypeError, SystemError) as error:
            self._read(str(error.__cause__ or error))

    def _read(self, text):
        lines = text.splitlines()
        if "Possible C/C++ prototypes" in text:
            self.overloaded = True
            self.forms = []
            for line in (line for line in lines if line.startswith("    ")):
                qualified, types = _prototype(line.strip())
                scope = _scope(qualified)
                # A method, unless it is static: both are tried.
                if scope and not self.name.startswith("new_") and self.name.startswith(_last(scope) + "_"):
                    self.forms.append([scope + " *", *types])
                else:
                    self.forms.append(types)
            count = _COUNT.search(lines[0])
            longest = max(map(len, self.forms))
            if count and longest > int(count[2]):
                self.forms = [form[1:] if len(form) > int(count[2]) else form for form in self.forms]
            elif count and longest < int(count[2]):
                # The object's class has another name in Python.
                self.forms = [[None, *form] for form in self.forms]
        elif "takes exactly one argument" in text:
            self.forms = [[None]]
        elif found := _COUNT.search(text):
            self.forms = [[None] * int(found[2])]

    def shifted(self):
        """Without the first parameter."""
        result = Signature(self.name, None)
        result.overloaded = True
        result.forms = [form[1:] for form in self.forms]
        return result

    def learn(self, error):
        """Takes the type of an argument from the message that refused it. Tells whether that is news."""
        found = _ARGUMENT.search(str(error))
        if not found or self.overloaded:
            return False
        position = int(found[2]) - 1
        news = position < len(self.forms[0]) and self.forms[0][position] is None
        if news:
            self.forms[0][position] = found[3]
        return news


def _last(scope):
    """The bare class name: without namespace and template arguments."""
    return re.split(r"::", re.sub(r"<.*>", "", scope))[-1].strip()
