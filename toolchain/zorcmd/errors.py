"""The one exception that the command turns into a message and an exit status."""


class ZorError(Exception):
    """Something that the user has to know; `hint` says what can be done about it."""

    def __init__(self, message, hint="", status=1):
        super().__init__(message)
        self.hint = hint
        self.status = status
