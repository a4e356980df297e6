"""The exception of the library."""


class LibraryError(Exception):
    """The only exception that the library raises: a number, a source such as "CLog.AddEntry", a description.

    `results` is what the by-reference results of the member held when it failed, in their order.
    """

    def __init__(self, number: int, source: str = "", description: str = "") -> None:
        super().__init__(number, source, description)
        self.number = number
        self.source = source
        self.description = description
        self.results: tuple = ()

    def __str__(self) -> str:
        return self.description
