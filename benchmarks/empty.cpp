// A shared library with nothing in it: what loading any library takes.
